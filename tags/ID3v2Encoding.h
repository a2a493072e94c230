#pragma once

#include <cstdint>
#include <vector>

#include "foundation/String.h"

// The byte-level encodings of ID3v2 version 2.2 and 2.3 tags: the
// unsynchronisation of a tag's body and the text of text frames. Pure
// functions; any thread may call them.
namespace tbx::id3v2 {

// Takes unsynchronisation back: every 0xFF 0x00 loses its 0x00.
void resynchronise(std::vector<std::uint8_t>& bytes);
// Whether the bytes hold a 0xFF followed by 0x00 or by a byte with its top
// three bits set, or end with 0xFF: what could be taken for (part of) an
// MPEG sync pattern.
bool needsUnsynchronisation(const std::vector<std::uint8_t>& bytes);
// The bytes with a 0x00 behind each such 0xFF.
std::vector<std::uint8_t> unsynchronise(const std::vector<std::uint8_t>& bytes);

// The text of a text frame's data (encoding byte and text), cut at the
// first terminator and trimmed. Encoding 0 is Latin-1; every other is
// UTF-16 read as the writer below writes it (see the source).
fenn::String decodeTextFrame(const std::uint8_t* data, std::int32_t size);
// The data of a text frame: Latin-1 when every character is at most 0x100
// (which has no Latin-1 form and is left out), else UTF-16 little-endian
// behind the bytes 0xFE 0xFF; each with its terminator.
std::vector<std::uint8_t> encodeTextFrame(const fenn::String& text);

}  // namespace tbx::id3v2
