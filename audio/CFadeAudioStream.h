#pragma once

#include <vector>

#include "audio/IAudioSource.h"
#include "foundation/CObject.h"
#include "foundation/P.h"

namespace tbx {

// The stream of a fade block: the inner stream's frames, each multiplied by a
// gain that runs linearly from startGain at the block's start to endGain at
// its end. Outside the fade it adds nothing. Holds the block it was made for
// and the inner stream (which may be null: then the stream is silent). Used
// by one thread at a time.
class CFadeAudioStream : public fenn::CObject, public virtual IAudioStream
{
public:
    // block gives the fade's place on the time line (GetStart, GetDuration);
    // the fade covers trunc(start * rate) to trunc(duration * rate + that).
    CFadeAudioStream(fenn::P<IAudioBlock> block, double startGain, double endGain, fenn::P<IAudioStream> inner,
                     std::int64_t startFrame, std::int64_t endFrame, double rate, std::int32_t channels,
                     std::int32_t resampleMode);

    std::int64_t GetFadeStartFrame() const { return m_fadeStartFrame; }
    std::int64_t GetFadeEndFrame() const { return m_fadeEndFrame; }
    std::int32_t GetResampleMode() const { return m_resampleMode; }
    double GetRate() const { return m_rate; }

    std::int32_t Read(std::int32_t* buffer, std::int32_t frames) override;

private:
    std::int64_t m_startFrame;
    std::int64_t m_endFrame;
    double m_rate;
    std::int32_t m_channels;
    std::int32_t m_resampleMode;
    std::int64_t m_fadeStartFrame;
    std::int64_t m_fadeEndFrame;
    std::int64_t m_position;
    double m_startGain;
    double m_gainDelta;
    fenn::P<IAudioBlock> m_block;
    fenn::P<IAudioStream> m_inner;
    // The inner stream's frames of one read, kept to avoid an allocation per read.
    std::vector<std::int32_t> m_innerSamples;
};

}  // namespace tbx
