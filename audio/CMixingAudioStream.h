#pragma once

#include <vector>

#include "audio/IAudioSource.h"
#include "foundation/CObject.h"
#include "foundation/P.h"

namespace tbx {

// The mix of several streams over the range [startFrame, endFrame]: every
// inner stream adds into the same buffer, in the order they were added, with
// no limit on the sum. Owns its inner streams. Used by one thread at a time.
class CMixingAudioStream : public fenn::CObject, public virtual IAudioStream
{
public:
    CMixingAudioStream(std::int32_t channels, double rate, std::int64_t startFrame, std::int64_t endFrame);

    void AddStream(fenn::P<IAudioStream> stream);
    std::size_t GetStreamCount() const { return m_streams.size(); }
    std::int32_t GetChannels() const { return m_channels; }
    double GetRate() const { return m_rate; }

    std::int32_t Read(std::int32_t* buffer, std::int32_t frames) override;

private:
    std::vector<fenn::P<IAudioStream>> m_streams;
    std::int32_t m_channels;
    double m_rate;
    std::int64_t m_position;
    std::int64_t m_startFrame;
    std::int64_t m_endFrame;
};

}  // namespace tbx
