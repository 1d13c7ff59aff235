#pragma once
// What is legal in a frame and surely a mistake of the game: told once each, as warnings.

class CCamera;

namespace Runner
{
class Game;

// The camera of that number, which a view is to show, does not exist. -1 stands for no camera and is no mistake.
void WarnOfMissingCamera(Game& game, int camera, int view);

// The camera follows an instance or an object that never existed. One that is gone by now is no mistake.
void WarnOfTarget(Game& game, const CCamera& camera);
} // namespace Runner
