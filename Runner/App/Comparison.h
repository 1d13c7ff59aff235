#pragma once

#include "Runner/App/Session.h"

namespace Runner
{
// The options for the game that the one of the options is compared to. What is written is of the first.
RunOptions OtherGame(const RunOptions& options);

// Plays the recording of the options twice, with their game and with the one that it is compared to, and writes six
// frames of each as one strip of pictures: the game above, the other below. A game that fails has the frames before.
Outcome Compare(const RunOptions& options, FILE* err);
} // namespace Runner
