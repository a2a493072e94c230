#include "gui/widgets/CTextEditModel.h"

#include "foundation/CUnicodeData.h"

namespace fenn::gui {

namespace {

// Older edits are forgotten beyond this many; an edit holds only the text it
// changed, so the history stays small even for long texts.
constexpr std::size_t kMaxUndoSteps = 200;

constexpr char32_t kZeroWidthJoiner = 0x200D;

bool isRegionalIndicator(char32_t c)
{
    return c >= 0x1F1E6 && c <= 0x1F1FF;
}

// Code points that attach to the one before them: marks, variation
// selectors, emoji skin tone modifiers, tag characters and the joiner.
bool attachesToPrevious(char32_t c)
{
    const std::uint8_t category = CUnicodeData::getCategory(static_cast<std::int32_t>(c));
    if ((category & CUnicodeData::kClassMask) == CUnicodeData::kMarkClass) return true;
    return (c >= 0xFE00 && c <= 0xFE0F) || (c >= 0xE0100 && c <= 0xE01EF) || (c >= 0x1F3FB && c <= 0x1F3FF) ||
           (c >= 0xE0020 && c <= 0xE007F) || c == kZeroWidthJoiner;
}

enum class CharacterClass

{
    space,
    word,
    other,
};

CharacterClass classOf(char32_t c)
{
    if (c == U' ' || c == U'\t' || c == 0xA0) return CharacterClass::space;
    const std::uint8_t category = CUnicodeData::getCategory(static_cast<std::int32_t>(c));
    const std::uint8_t group = category & CUnicodeData::kClassMask;
    if (group == CUnicodeData::kSeparatorClass) return CharacterClass::space;
    if (group == CUnicodeData::kLetterClass || group == CUnicodeData::kNumberClass ||
        group == CUnicodeData::kMarkClass || category == CUnicodeData::kConnectorPunctuation)
        return CharacterClass::word;
    return CharacterClass::other;
}

bool isWordCharacter(char32_t c)
{
    return classOf(c) == CharacterClass::word;
}

}  // namespace

CTextEditModel::CTextEditModel(TextLines lines) : m_lines(lines) {}

String CTextEditModel::getText() const
{
    return String::copyOfUTF32(m_text).asUTF8();
}

std::u32string CTextEditModel::normalize(const std::u32string& text) const
{
    const bool single = m_lines == TextLines::single;
    std::u32string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char32_t c = text[i];
        if (c == U'\r' && i + 1 < text.size() && text[i + 1] == U'\n') continue;
        if (c == U'\r' || c == U'\n' || c == 0x2028 || c == 0x2029) {
            out.push_back(single ? U' ' : U'\n');
        } else if (c == U'\t') {
            out.push_back(single ? U' ' : U'\t');
        } else if (c < 0x20 || c == 0x7F || (c >= 0xD800 && c <= 0xDFFF) || c > 0x10FFFF) {
            continue;
        } else {
            out.push_back(c);
        }
    }
    return out;
}

void CTextEditModel::setText(const String& text)
{
    m_text = normalize(text.toUTF32());
    if (m_maxLength >= 0 && getLength() > m_maxLength) m_text.resize(static_cast<std::size_t>(m_maxLength));
    m_caret = m_anchor = getLength();
    m_undo.clear();
    m_redo.clear();
    m_lastKind = EditKind::other;
}

void CTextEditModel::setMaxLength(int maxLength)
{
    m_maxLength = maxLength < 0 ? -1 : maxLength;
    if (m_maxLength >= 0 && getLength() > m_maxLength) setText(String::copyOfUTF32(m_text));
}

String CTextEditModel::getSelectedText() const
{
    return String::copyOfUTF32(
               std::u32string_view(m_text).substr(static_cast<std::size_t>(getSelectionStart()),
                                                  static_cast<std::size_t>(getSelectionEnd() - getSelectionStart())))
        .asUTF8();
}

bool CTextEditModel::isClusterContinuation(int index) const
{
    if (index <= 0 || index >= getLength()) return false;
    const char32_t c = m_text[static_cast<std::size_t>(index)];
    const char32_t before = m_text[static_cast<std::size_t>(index - 1)];
    if (before == U'\n' || before == U'\t') return false;
    if (attachesToPrevious(c) || before == kZeroWidthJoiner) return true;
    if (isRegionalIndicator(c)) {
        // Flags are pairs of regional indicators: the second of each pair attaches.
        int run = 0;
        for (int i = index - 1; i >= 0 && isRegionalIndicator(m_text[static_cast<std::size_t>(i)]); --i) ++run;
        return run % 2 == 1;
    }
    return false;
}

int CTextEditModel::clusterStart(int index) const
{
    index = std::clamp(index, 0, getLength());
    while (isClusterContinuation(index)) --index;
    return index;
}

void CTextEditModel::setCaret(int index, CaretMove move)
{
    m_caret = clusterStart(index);
    if (move == CaretMove::move) m_anchor = m_caret;
    m_lastKind = EditKind::other;
}

void CTextEditModel::select(int anchor, int caret)
{
    m_anchor = clusterStart(anchor);
    m_caret = clusterStart(caret);
    m_lastKind = EditKind::other;
}

std::pair<int, int> CTextEditModel::wordRangeAt(int index) const
{
    const int length = getLength();
    index = clusterStart(index);
    const auto at = [this](int i) { return m_text[static_cast<std::size_t>(i)]; };
    // A caret after the last character of a line means the word before it.
    if (index > 0 && (index == length || at(index) == U'\n') && at(index - 1) != U'\n') index = clusterStart(index - 1);
    if (index >= length || at(index) == U'\n') return {index, index};
    const CharacterClass kind = classOf(at(index));
    if (kind == CharacterClass::other) return {index, nextStop(index, TextUnit::character)};
    int start = index;
    while (start > 0 && at(start - 1) != U'\n' && (classOf(at(start - 1)) == kind || isClusterContinuation(start)))
        --start;
    int end = index;
    while (end < length && at(end) != U'\n' && (classOf(at(end)) == kind || isClusterContinuation(end))) ++end;
    return {start, end};
}

void CTextEditModel::selectWordAt(int index)
{
    const auto [start, end] = wordRangeAt(index);
    select(start, end);
}

int CTextEditModel::previousStop(int index, TextUnit unit) const
{
    index = clusterStart(index);
    if (index <= 0) return 0;
    if (unit == TextUnit::character) return clusterStart(index - 1);
    while (index > 0 && !isWordCharacter(m_text[static_cast<std::size_t>(index - 1)])) --index;
    while (index > 0 && isWordCharacter(m_text[static_cast<std::size_t>(index - 1)])) --index;
    return clusterStart(index);
}

int CTextEditModel::nextStop(int index, TextUnit unit) const
{
    const int length = getLength();
    index = clusterStart(index);
    if (index >= length) return length;
    if (unit == TextUnit::character) {
        ++index;
        while (isClusterContinuation(index)) ++index;
        return index;
    }
    while (index < length && !isWordCharacter(m_text[static_cast<std::size_t>(index)])) ++index;
    while (index < length && (isWordCharacter(m_text[static_cast<std::size_t>(index)]) || isClusterContinuation(index)))
        ++index;
    return index;
}

bool CTextEditModel::insert(const String& text)
{
    return replace(getSelectionStart(), getSelectionEnd(), normalize(text.toUTF32()), EditKind::other);
}

bool CTextEditModel::type(const String& text)
{
    return replace(getSelectionStart(), getSelectionEnd(), normalize(text.toUTF32()), EditKind::typing);
}

bool CTextEditModel::eraseSelection()
{
    return replace(getSelectionStart(), getSelectionEnd(), {}, EditKind::other);
}

bool CTextEditModel::eraseBackward(TextUnit unit)
{
    if (hasSelection()) return eraseSelection();
    return replace(previousStop(m_caret, unit), m_caret, {}, EditKind::erasingBackward);
}

bool CTextEditModel::eraseForward(TextUnit unit)
{
    if (hasSelection()) return eraseSelection();
    return replace(m_caret, nextStop(m_caret, unit), {}, EditKind::erasingForward);
}

bool CTextEditModel::replace(int start, int end, const std::u32string& text, EditKind kind)
{
    std::u32string inserted = text;
    if (m_maxLength >= 0) {
        const int room = m_maxLength - (getLength() - (end - start));
        if (room < static_cast<int>(inserted.size())) inserted.resize(static_cast<std::size_t>(std::max(0, room)));
    }
    if (start == end && inserted.empty()) return false;
    const std::size_t at = static_cast<std::size_t>(start);
    const std::u32string removed = m_text.substr(at, static_cast<std::size_t>(end - start));

    Edit* last = m_undo.empty() || m_lastKind != kind ? nullptr : &m_undo.back();
    bool merged = false;
    if (last && kind == EditKind::typing && removed.empty() &&
        start == last->start + static_cast<int>(last->inserted.size()) && !last->inserted.empty()) {
        // A space typed after a word starts the next undo step.
        const bool wordEnds = inserted.front() == U' ' && last->inserted.back() != U' ';
        if (!wordEnds) {
            last->inserted += inserted;
            merged = true;
        }
    } else if (last && kind == EditKind::erasingBackward && last->inserted.empty() && end == last->start) {
        last->removed = removed + last->removed;
        last->start = start;
        merged = true;
    } else if (last && kind == EditKind::erasingForward && last->inserted.empty() && start == last->start) {
        last->removed += removed;
        merged = true;
    }
    if (!merged) {
        m_undo.push_back({start, removed, inserted, m_caret, m_anchor});
        if (m_undo.size() > kMaxUndoSteps) m_undo.erase(m_undo.begin());
    }
    m_redo.clear();
    m_text.replace(at, removed.size(), inserted);
    m_caret = m_anchor = start + static_cast<int>(inserted.size());
    m_lastKind = kind;
    return true;
}

bool CTextEditModel::undo()
{
    if (m_undo.empty()) return false;
    Edit edit = std::move(m_undo.back());
    m_undo.pop_back();
    m_text.replace(static_cast<std::size_t>(edit.start), edit.inserted.size(), edit.removed);
    m_caret = std::clamp(edit.caretBefore, 0, getLength());
    m_anchor = std::clamp(edit.anchorBefore, 0, getLength());
    m_redo.push_back(std::move(edit));
    m_lastKind = EditKind::other;
    return true;
}

bool CTextEditModel::redo()
{
    if (m_redo.empty()) return false;
    Edit edit = std::move(m_redo.back());
    m_redo.pop_back();
    m_text.replace(static_cast<std::size_t>(edit.start), edit.removed.size(), edit.inserted);
    m_caret = m_anchor = edit.start + static_cast<int>(edit.inserted.size());
    m_undo.push_back(std::move(edit));
    m_lastKind = EditKind::other;
    return true;
}

}  // namespace fenn::gui
