#pragma once

#include "audio/IAudioSource.h"
#include "foundation/CObject.h"

namespace tbx {

// The stream of a block without content: adds nothing and never ends. Used by
// one thread at a time.
class CSilenceStream : public fenn::CObject, public virtual IAudioStream
{
public:
    std::int32_t Read(std::int32_t* buffer, std::int32_t frames) override;
};

}  // namespace tbx
