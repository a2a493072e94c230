#pragma once

#include <cstdint>
#include <string>
#include <system_error>

#include "foundation/CObjectError.h"
#include "foundation/CURIError.h"
#include "foundation/IStream.h"

// Checks and error texts shared by the stream classes, so that every stream
// reports the same failure in the same words.
namespace fenn {

[[noreturn]] inline void throwStreamClosed(const StreamURI& uri)
{
    throw CStreamClosedError(uri, "The stream is closed (uri: '%URI%').");
}

// A byte count handed to read, readSome or write must not be negative.
inline void checkByteCount(const IBase* stream, const char* method, std::int32_t size)
{
    if (size < 0) throw CInvalidArgError(stream, method, "size");
}

// The system's description of an errno value, in the URI error form:
// "<action> '%URI%': <description>".
inline String describeSystemError(const char* action, int error)
{
    return String(action) + " '%URI%': " + String::copyOf(std::generic_category().message(error));
}

}  // namespace fenn
