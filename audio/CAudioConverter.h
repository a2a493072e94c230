#pragma once

#include <cstdint>

#include "foundation/CObject.h"

namespace tbx {

// The one place where audio changes rate or channel count: a streaming
// converter of 16-bit frames with a 16.16 fixed-point phase and linear
// interpolation. It holds the last input frame of a buffer back until the
// next buffer arrives, so a sink that keeps one converter for a whole file
// gets no click at chunk borders. Pointers are borrowed, never copied. Used
// by one thread at a time.
class CAudioConverter : public fenn::CObject
{
public:
    // 100.0 to 500000.0 Hz inclusive; anything else throws CInvalidArgError.
    void SetInputRate(double rate);
    void SetOutputRate(double rate);
    // 1 or 2; anything else throws CInvalidArgError.
    void SetInputChannels(std::int32_t channels);
    void SetOutputChannels(std::int32_t channels);
    double GetInputRate() const { return m_inputRate; }
    double GetOutputRate() const { return m_outputRate; }
    std::int32_t GetInputChannels() const { return m_inputChannels; }
    std::int32_t GetOutputChannels() const { return m_outputChannels; }

    // The next input frames and the room for output; may be called with more
    // input while a tail frame is held.
    void SetInput(const std::int16_t* samples, std::int32_t frames);
    void SetOutput(std::int16_t* samples, std::int32_t frames);
    // Input frames not yet taken, output room not yet used.
    std::int32_t GetInputFrames() const { return m_inputFrames; }
    std::int32_t GetOutputFrames() const { return m_outputFrames; }

    // Forgets the phase and the held tail.
    void Reset();
    // Converts as much as input and output allow.
    void Convert(std::int32_t* consumed = nullptr, std::int32_t* produced = nullptr);
    // Writes the frames the held tail still yields; true when output room is left.
    bool Drain(std::int32_t* produced = nullptr);
    // Output frames that Drain would write.
    std::int32_t GetPendingFrames() const;

private:
    // Input frames per output frame in 16.16 fixed point, truncated.
    std::uint64_t step() const;
    void convertEqualRates();
    template <class Pair> void resample();

    double m_inputRate = 44100.0;
    std::int32_t m_inputChannels = 2;
    const std::int16_t* m_input = nullptr;
    std::int32_t m_inputFrames = 0;
    double m_outputRate = 44100.0;
    std::int32_t m_outputChannels = 2;
    std::int16_t* m_output = nullptr;
    std::int32_t m_outputFrames = 0;
    std::uint64_t m_phase = 0;
    bool m_tailPending = false;
    std::int32_t m_tailLeft = 0;
    std::int32_t m_tailRight = 0;
};

}  // namespace tbx
