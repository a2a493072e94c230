#pragma once

#include <cstdint>

#include "audio/IAudioChunk.h"
#include "foundation/P.h"
#include "foundation/String.h"

namespace fenn {
class IOutStream;
}

namespace tbx {

// Why a source is opened.
enum class AudioPurpose : std::int32_t { playback = 1, conversion = 8, analysis = 16 };

// Something that fills chunks: a decoder, a disc track, a generator. A source
// is opened, read to its end and closed; it keeps its position itself and
// may change rate or channels from one read to the next.
class IAudioSource : public virtual fenn::IBase
{
public:
    // Short name of the kind of source ("WAV", "CDAudioTrack"...).
    virtual fenn::String GetTypeName() const = 0;
    // Opens the input and reads its headers; throws on failure.
    virtual void Open(std::int32_t purpose, fenn::IBase* context) = 0;
    // Stream facts: "duration" in seconds, "sampleRate", "channels" and
    // what the format adds.
    virtual fenn::P<fenn::CValueList> GetInfo() = 0;
    // The metadata of the source ("artist", "title"...).
    virtual fenn::P<fenn::CValueList> GetTags() = 0;
    // Fills the chunk and sets its rate, channels and length. False at the
    // end of the data; true with length 0 means "nothing yet, ask again".
    virtual bool Read(IAudioChunk& chunk) = 0;
    // True when Read may return empty chunks and the caller should wait.
    virtual bool IsLive() const = 0;
    // Fraction read, from 0.0 to 1.0.
    virtual double GetProgress() const = 0;
    virtual void Reset() = 0;
    // Releases everything; safe after a failed Open.
    virtual void Close() = 0;
};

// Something that takes chunks: an encoder, a device. Created open, with one
// fixed format; chunks of another format are converted on the way in.
class IAudioSink : public virtual fenn::IBase
{
public:
    virtual void Write(const IAudioChunk& chunk) = 0;
    // Writes what is left and completes the output, which is valid afterwards.
    virtual void Finish() = 0;
    // Closes the output without completing it.
    virtual void Abort() = 0;
};

// A pull stream of the editor's graph. Read adds the stream's samples into
// the caller's 32-bit buffer (interleaved with the stream's channels) and
// returns the frames handled; 0 means the end.
class IAudioStream : public virtual fenn::IBase
{
public:
    virtual std::int32_t Read(std::int32_t* buffer, std::int32_t frames) = 0;
};

// An immutable piece of the editor's time line. Positions are seconds.
class IAudioBlock : public virtual fenn::IBase
{
public:
    virtual double GetStart() const = 0;
    virtual double GetDuration() const = 0;
    // Appends the block to a project file; false on failure.
    virtual bool Save(fenn::IOutStream& stream) = 0;
    // A stream of the frames from startFrame to endFrame at the given format,
    // or null when the block has nothing there.
    virtual fenn::P<IAudioStream> CreateStream(std::int64_t startFrame, std::int64_t endFrame, double rate,
                                               std::int32_t channels, std::int32_t resampleMode) = 0;
};

}  // namespace tbx
