#include "Runner/Game/Mistakes.h"

#include "Files/Graphics/Graphics_Support.h"
#include "Runner/Base/Printable.h"
#include "Runner/Game/Game.h"

namespace Runner
{
void WarnOfMissingCamera(Game& game, int camera, int view)
{
    if (camera == NO_CAMERA || view == NO_VIEW)
        return;
    game.scripts.warnings.Once("view " + std::to_string(view) + " of room \"" +
                               Printable(game.rooms.Running()->spec.name) + "\" shows camera " +
                               std::to_string(camera) + ", which does not exist, so nothing is drawn");
}

void WarnOfTarget(Game& game, const CCamera& camera)
{
    const int target = camera.GetTargetInstance();
    const bool isInstance = target >= INSTANCE_ID_FIRST;
    const bool exists = isInstance ? target < game.world.NextId() : target < game.world.ObjectCount(); // or existed
    if (exists)
        return;
    game.scripts.warnings.Once("camera " + std::to_string(camera.GetID()) + " follows " +
                               (isInstance ? "instance " : "object ") + std::to_string(target) +
                               ", which never existed, so it stays where it is");
}
} // namespace Runner
