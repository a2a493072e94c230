#include "audio/CMixingAudioStream.h"

#include <utility>

namespace tbx {

CMixingAudioStream::CMixingAudioStream(std::int32_t channels, double rate, std::int64_t startFrame,
                                       std::int64_t endFrame)
    : m_channels(channels), m_rate(rate), m_position(startFrame), m_startFrame(startFrame), m_endFrame(endFrame)
{
}

void CMixingAudioStream::AddStream(fenn::P<IAudioStream> stream)
{
    m_streams.push_back(std::move(stream));
}

std::int32_t CMixingAudioStream::Read(std::int32_t* buffer, std::int32_t frames)
{
    if (m_endFrame < m_position) return 0;
    for (const auto& stream : m_streams) stream->Read(buffer, frames);
    m_position += frames;
    return frames;
}

}  // namespace tbx
