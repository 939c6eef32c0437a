/// @file
/// Figures of a run for a person.
#pragma once

namespace QXApp {

class QXRendererSession;

/// Prints the frame statistics of the target and what the last frame drew, one figure a line.
/// @param bScene      whether a scene is shown, and not a model alone
/// @param nFrameTime  milliseconds of a clock that goes in steps, which measures nothing; 0 for a real one
void PrintStats(QXRendererSession const& session, bool bScene, int nFrameTime);

}  // namespace QXApp
