#include "audio/CAudioPaddingStream.h"

#include <algorithm>
#include <utility>

namespace tbx {

CAudioPaddingStream::CAudioPaddingStream(fenn::P<IAudioStream> inner, std::int64_t startFrame, std::int64_t endFrame,
                                         std::int32_t channels, std::int64_t frontPadding, std::int64_t backPadding)
    : m_inner(std::move(inner)), m_startFrame(startFrame), m_endFrame(endFrame), m_channels(channels),
      m_frontPadding(frontPadding), m_backPadding(backPadding), m_position(startFrame)
{
}

std::int32_t CAudioPaddingStream::Read(std::int32_t* buffer, std::int32_t frames)
{
    const std::int64_t silent =
        std::clamp<std::int64_t>(m_frontPadding + m_startFrame - m_position, 0, std::max<std::int32_t>(frames, 0));
    m_position += silent;

    const std::int64_t rest = frames - silent;
    const std::int64_t limit = m_endFrame - m_backPadding;
    const std::int64_t count = std::min(rest, limit - m_position);
    // In the back padding the position stands still: every later read is silent too.
    if (count <= 0) return frames;

    m_inner->Read(buffer + m_channels * silent, static_cast<std::int32_t>(count));
    // The whole rest counts as read, also when the back padding cut the inner read short.
    m_position += rest;
    return frames;
}

}  // namespace tbx
