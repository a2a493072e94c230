// Reads UnicodeData.txt of the Unicode character database and writes the C++
// source of the page tables behind fenn::CUnicodeData: per code point the
// delta to its simple lower-case form and its general category.
//
//   GenerateUnicodeData UnicodeData.txt CUnicodeDataTables.cpp
//
// UnicodeData.txt has one line per code point with 15 fields separated by
// semicolons (UAX #44): field 0 is the code point in hex, 1 the name, 2 the
// general category and 13 the simple lowercase mapping. Large blocks are given
// as a pair of lines named "<..., First>" and "<..., Last>" that stand for every
// code point between them.

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <limits>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/CUnicodeData.h"

namespace {

using fenn::CUnicodeData;

constexpr std::int32_t kCodeSpaceSize = 0x110000;
constexpr std::size_t kFieldCount = 15;
constexpr std::size_t kCodePointField = 0;
constexpr std::size_t kNameField = 1;
constexpr std::size_t kCategoryField = 2;
constexpr std::size_t kLowercaseField = 13;
constexpr int kValuesPerLine = 16;

static_assert(CUnicodeData::kCategoryTableLimit % (1 << CUnicodeData::kCategoryPageShift) == 0);

struct CategoryName
{
    std::string_view name;
    std::uint8_t value;
};

constexpr CategoryName kCategoryNames[] = {
    {"Lu", CUnicodeData::kUppercaseLetter},
    {"Ll", CUnicodeData::kLowercaseLetter},
    {"Lt", CUnicodeData::kTitlecaseLetter},
    {"Lm", CUnicodeData::kModifierLetter},
    {"Lo", CUnicodeData::kOtherLetter},
    {"Mn", CUnicodeData::kNonspacingMark},
    {"Mc", CUnicodeData::kSpacingMark},
    {"Me", CUnicodeData::kEnclosingMark},
    {"Nd", CUnicodeData::kDecimalNumber},
    {"Nl", CUnicodeData::kLetterNumber},
    {"No", CUnicodeData::kOtherNumber},
    {"Pc", CUnicodeData::kConnectorPunctuation},
    {"Pd", CUnicodeData::kDashPunctuation},
    {"Ps", CUnicodeData::kOpenPunctuation},
    {"Pe", CUnicodeData::kClosePunctuation},
    {"Pi", CUnicodeData::kInitialPunctuation},
    {"Pf", CUnicodeData::kFinalPunctuation},
    {"Po", CUnicodeData::kOtherPunctuation},
    {"Sm", CUnicodeData::kMathSymbol},
    {"Sc", CUnicodeData::kCurrencySymbol},
    {"Sk", CUnicodeData::kModifierSymbol},
    {"So", CUnicodeData::kOtherSymbol},
    {"Zs", CUnicodeData::kSpaceSeparator},
    {"Zl", CUnicodeData::kLineSeparator},
    {"Zp", CUnicodeData::kParagraphSeparator},
    {"Cc", CUnicodeData::kControl},
    {"Cf", CUnicodeData::kFormat},
    {"Cs", CUnicodeData::kSurrogate},
    {"Co", CUnicodeData::kPrivateUse},
};

class CInputError : public std::runtime_error
{
public:
    CInputError(std::int32_t lineNumber, const std::string& message)
        : std::runtime_error("line " + std::to_string(lineNumber) + ": " + message)
    {
    }
};

struct Database
{
    std::vector<std::uint8_t> categories = std::vector<std::uint8_t>(kCodeSpaceSize, CUnicodeData::kUnassigned);
    std::vector<std::int16_t> foldDeltas = std::vector<std::int16_t>(kCodeSpaceSize, 0);
    // Code points whose lowercase form lies in another plane of 65536 code
    // points, which the wrapped 16-bit delta cannot reach.
    std::vector<std::int32_t> unfoldable;
};

std::vector<std::string_view> splitFields(std::string_view line)
{
    std::vector<std::string_view> fields;
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = line.find(';', start);
        fields.push_back(line.substr(start, end - start));
        if (end == std::string_view::npos) return fields;
        start = end + 1;
    }
}

std::int32_t parseCodePoint(std::string_view text, std::int32_t lineNumber)
{
    std::uint32_t value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, 16);
    if (text.empty() || error != std::errc() || stop != end || value >= static_cast<std::uint32_t>(kCodeSpaceSize)) {
        throw CInputError(lineNumber, "bad code point \"" + std::string(text) + "\"");
    }
    return static_cast<std::int32_t>(value);
}

std::uint8_t parseCategory(std::string_view text, std::int32_t lineNumber)
{
    for (const CategoryName& category : kCategoryNames) {
        if (category.name == text) return category.value;
    }
    throw CInputError(lineNumber, "unknown general category \"" + std::string(text) + "\"");
}

bool endsWith(std::string_view text, std::string_view tail)
{
    return text.size() >= tail.size() && text.substr(text.size() - tail.size()) == tail;
}

Database readDatabase(std::istream& in)
{
    Database database;
    std::string line;
    std::int32_t lineNumber = 0;
    std::int32_t previous = -1;
    std::int32_t rangeFirst = -1;
    std::uint8_t rangeCategory = CUnicodeData::kUnassigned;
    while (std::getline(in, line)) {
        ++lineNumber;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty()) continue;
        const std::vector<std::string_view> fields = splitFields(line);
        if (fields.size() != kFieldCount) {
            throw CInputError(lineNumber,
                              std::to_string(fields.size()) + " fields, expected " + std::to_string(kFieldCount));
        }
        const std::int32_t codePoint = parseCodePoint(fields[kCodePointField], lineNumber);
        if (codePoint <= previous) throw CInputError(lineNumber, "code points out of order");
        previous = codePoint;
        const std::uint8_t category = parseCategory(fields[kCategoryField], lineNumber);
        const std::string_view name = fields[kNameField];

        if (endsWith(name, ", Last>")) {
            if (rangeFirst < 0 || category != rangeCategory) {
                throw CInputError(lineNumber, "range end without a matching start");
            }
            for (std::int32_t member = rangeFirst; member <= codePoint; ++member) {
                database.categories[member] = category;
            }
            rangeFirst = -1;
            continue;
        }
        if (rangeFirst >= 0) throw CInputError(lineNumber, "range start without an end");
        if (endsWith(name, ", First>")) {
            rangeFirst = codePoint;
            rangeCategory = category;
        }
        database.categories[codePoint] = category;

        const std::string_view lowercase = fields[kLowercaseField];
        if (lowercase.empty()) continue;
        // The delta is kept modulo 65536 and applied within the code point's
        // plane, so that far mappings such as the Cherokee capitals (38864
        // apart) still fit in 16 bits.
        const std::int32_t lower = parseCodePoint(lowercase, lineNumber);
        if ((lower >> 16) != (codePoint >> 16)) {
            database.unfoldable.push_back(codePoint);
        } else {
            database.foldDeltas[codePoint] = static_cast<std::int16_t>(static_cast<std::uint16_t>(lower - codePoint));
        }
    }
    if (rangeFirst >= 0) throw CInputError(lineNumber, "range start without an end");
    if (lineNumber == 0) throw CInputError(0, "empty file");
    return database;
}

template <typename T> struct PageTable
{
    std::int32_t size = 0;
    std::vector<std::uint16_t> pageIndex;
    std::vector<T> entries;

    std::size_t getByteSize() const { return pageIndex.size() * sizeof(std::uint16_t) + entries.size() * sizeof(T); }
};

// The table covers the code points below limit up to the last page that holds
// a value other than zero; beyond its size the lookup needs no entries. Pages
// with the same contents are stored once.
template <typename T> PageTable<T> buildPageTable(const std::vector<T>& values, std::int32_t limit, int pageShift)
{
    const std::int32_t pageSize = 1 << pageShift;
    std::int32_t last = limit - 1;
    while (last > 0 && values[last] == 0) --last;

    PageTable<T> table;
    table.size = (last / pageSize + 1) * pageSize;
    std::map<std::vector<T>, std::uint16_t> pageNumbers;
    for (std::int32_t start = 0; start < table.size; start += pageSize) {
        std::vector<T> page(values.begin() + start, values.begin() + start + pageSize);
        auto found = pageNumbers.find(page);
        if (found == pageNumbers.end()) {
            if (pageNumbers.size() > std::numeric_limits<std::uint16_t>::max()) {
                throw std::runtime_error("too many distinct pages for a 16-bit page index");
            }
            const auto number = static_cast<std::uint16_t>(pageNumbers.size());
            table.entries.insert(table.entries.end(), page.begin(), page.end());
            found = pageNumbers.emplace(std::move(page), number).first;
        }
        table.pageIndex.push_back(found->second);
    }
    return table;
}

template <typename T> void writeArray(std::ostream& out, const char* declaration, const std::vector<T>& values)
{
    out << declaration << "[" << values.size() << "] = {";
    for (std::size_t i = 0; i < values.size(); ++i) {
        out << (i % kValuesPerLine == 0 ? "\n    " : " ") << static_cast<std::int32_t>(values[i]) << ",";
    }
    out << "\n};\n";
}

std::string renderSource(const PageTable<std::int16_t>& fold, const PageTable<std::uint8_t>& category)
{
    std::ostringstream out;
    out << "// Generated from UnicodeData.txt by tools/unicode/GenerateUnicodeData; do not edit.\n\n"
        << "#include \"foundation/CUnicodeData.h\"\n\n"
        << "namespace fenn {\n\n"
        << "const std::int32_t CUnicodeData::kFoldTableSize = " << fold.size << ";\n";
    writeArray(out, "const std::uint16_t CUnicodeData::kFoldPageIndex", fold.pageIndex);
    writeArray(out, "const std::int16_t CUnicodeData::kFoldDeltas", fold.entries);
    out << "\nconst std::int32_t CUnicodeData::kCategoryTableSize = " << category.size << ";\n";
    writeArray(out, "const std::uint16_t CUnicodeData::kCategoryPageIndex", category.pageIndex);
    writeArray(out, "const std::uint8_t CUnicodeData::kCategories", category.entries);
    out << "\n}  // namespace fenn\n";
    return out.str();
}

// Written beside the target and then renamed, so that a failed run never
// leaves a truncated source that looks up to date.
void writeFile(const std::filesystem::path& path, const std::string& text)
{
    std::filesystem::path temporary = path;
    temporary += ".tmp";
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        out << text;
        out.close();
        if (!out) throw std::runtime_error("cannot write " + temporary.string());
    }
    std::filesystem::rename(temporary, path);
}

std::string formatCodePoint(std::int32_t codePoint)
{
    char text[16];
    std::snprintf(text, sizeof text, "U+%04X", static_cast<unsigned>(codePoint));
    return text;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::cerr << "usage: " << argv[0] << " UnicodeData.txt OUTPUT.cpp\n";
        return 2;
    }
    try {
        std::ifstream in(argv[1], std::ios::binary);
        if (!in) throw std::runtime_error("cannot open " + std::string(argv[1]));
        Database database;
        try {
            database = readDatabase(in);
        } catch (const CInputError& error) {
            throw std::runtime_error(std::string(argv[1]) + ", " + error.what());
        }
        const auto fold = buildPageTable(database.foldDeltas, kCodeSpaceSize, CUnicodeData::kFoldPageShift);
        const auto category =
            buildPageTable(database.categories, CUnicodeData::kCategoryTableLimit, CUnicodeData::kCategoryPageShift);
        writeFile(argv[2], renderSource(fold, category));

        std::cout << "Unicode tables: folding " << fold.getByteSize() << " bytes (" << fold.pageIndex.size()
                  << " pages, " << fold.entries.size() / (std::size_t{1} << CUnicodeData::kFoldPageShift)
                  << " distinct), categories " << category.getByteSize() << " bytes (" << category.pageIndex.size()
                  << " pages, " << category.entries.size() / (std::size_t{1} << CUnicodeData::kCategoryPageShift)
                  << " distinct)\n";
        if (!database.unfoldable.empty()) {
            std::cout << "Unicode tables: " << database.unfoldable.size()
                      << " lowercase mappings left out, their distance does not fit 16 bits:";
            const std::vector<std::int32_t>& list = database.unfoldable;
            for (std::size_t first = 0, last = 0; first < list.size(); first = last + 1) {
                last = first;
                while (last + 1 < list.size() && list[last + 1] == list[last] + 1) ++last;
                std::cout << " " << formatCodePoint(list[first]);
                if (last > first) std::cout << ".." << formatCodePoint(list[last]);
            }
            std::cout << "\n";
        }
    } catch (const std::exception& error) {
        std::cerr << argv[0] << ": " << error.what() << "\n";
        return 1;
    }
    return 0;
}
