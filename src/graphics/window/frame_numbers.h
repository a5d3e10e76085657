#pragma once
/// Numbers, selectors and directions of frames.

inline constexpr int kMaxFrames = 128;
inline constexpr float kLastDelay = 1.0F; ///< seconds at first; the newest picture of a loop stays longer
/// Bit 0 set: forwards; from kRockBack on the loop turns at its ends.
enum LoopDirection : int { kLoopBack = 0, kLoopForward = 1, kRockBack = 2, kRockForward = 3 };
/// Frame selectors beside the numbers 0 to 127.
enum FrameSelector : int { kFrameLast = -1, kFrameCurrent = -2, kFrameBase = -3 };
