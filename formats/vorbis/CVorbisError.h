#pragma once

#include "foundation/CError.h"
#include "foundation/TextKey.h"

namespace tbx {

// A failure reported by libvorbis or vorbisfile, as one of the fixed texts
// of the codec: the code picks the text, and the code is kept for callers
// that tell cases apart.
class CVorbisError : public fenn::CError
{
    FENN_ERROR_CLASS(CVorbisError)
public:
    // code is one of the libraries' negative OV_ codes.
    explicit CVorbisError(int code);

    int getCode() const { return m_code; }

    // The text that stands for a code.
    static const fenn::TextKey& textFor(int code);

private:
    int m_code;
};

}  // namespace tbx
