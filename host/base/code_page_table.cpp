#include "host/base/code_page_table.h"

#include <cstring>
#include <iconv.h>
#include <memory>
#include <optional>
#include <string_view>
#include <unicode/ucnv.h>

namespace {

// The character of these bytes if they are exactly one.
class IcuDecoder {
public:
    explicit IcuDecoder(const char* name)
    {
        UErrorCode status = U_ZERO_ERROR;
        m_converter.reset(ucnv_open(name, &status));
        if (!m_converter)
            return;
        ucnv_setToUCallBack(m_converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
        ucnv_setFromUCallBack(m_converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    }
    bool valid() const { return m_converter != nullptr; }

    char32_t decode(std::string_view bytes)
    {
        UErrorCode status = U_ZERO_ERROR;
        UChar out[8];
        const int32_t length =
            ucnv_toUChars(m_converter.get(), out, 8, bytes.data(), static_cast<int32_t>(bytes.size()), &status);
        if (U_FAILURE(status) || length < 1)
            return 0;
        const char32_t c = U16_IS_LEAD(out[0]) && length > 1 ? U16_GET_SUPPLEMENTARY(out[0], out[1]) : out[0];
        return length == U16_LENGTH(static_cast<UChar32>(c)) && c != 0xFFFD ? c : 0;
    }

    // Where several codes mean one character, the one that writing uses.
    std::optional<unsigned> encode(char32_t c)
    {
        UErrorCode status = U_ZERO_ERROR;
        UChar text[2];
        int32_t length = 0;
        U16_APPEND_UNSAFE(text, length, c);
        char out[8];
        const int32_t size = ucnv_fromUChars(m_converter.get(), out, 8, text, length, &status);
        if (U_FAILURE(status) || size < 1 || size > 2)
            return std::nullopt;
        const auto first = static_cast<unsigned char>(out[0]);
        return size == 1 ? first : first * 256u + static_cast<unsigned char>(out[1]);
    }

private:
    struct Close {
        void operator()(UConverter* converter) const { ucnv_close(converter); }
    };
    std::unique_ptr<UConverter, Close> m_converter;
};

// For the one page that ICU's data lacks, the Korean JOHAB.
class IconvDecoder {
public:
    explicit IconvDecoder(const char* name) : m_handle(iconv_open("UTF-32LE", name)) {}
    IconvDecoder(const IconvDecoder&) = delete;
    ~IconvDecoder()
    {
        if (valid())
            iconv_close(m_handle);
    }
    bool valid() const { return m_handle != reinterpret_cast<iconv_t>(-1); }

    char32_t decode(std::string_view bytes)
    {
        char in[2];
        std::memcpy(in, bytes.data(), bytes.size());
        char32_t out[2] = {};
        char* from = in;
        char* to = reinterpret_cast<char*>(out);
        std::size_t inLeft = bytes.size(), outLeft = sizeof out;
        const std::size_t result = iconv(m_handle, &from, &inLeft, &to, &outLeft);
        iconv(m_handle, nullptr, nullptr, nullptr, nullptr);
        return result == 0 && inLeft == 0 && outLeft == sizeof(char32_t) ? out[0] : 0;
    }
    std::optional<unsigned> encode(char32_t) { return std::nullopt; }

private:
    iconv_t m_handle;
};

}  // namespace

CodePageTable::CodePageTable(const char* converter)
{
    m_rowOf.fill(-1);
    for (unsigned byte = 0; byte < 0x80; ++byte)
        m_single[byte] = byte;
    IcuDecoder icu(converter);
    IconvDecoder other(icu.valid() ? "UTF-8" : converter);
    if (icu.valid())
        build(icu);
    else if (other.valid())
        build(other);
}

template <class Decoder>
void CodePageTable::build(Decoder& decoder)
{
    for (unsigned byte = 0x80; byte < 0x100; ++byte) {
        const char text = static_cast<char>(byte);
        m_single[byte] = decoder.decode({&text, 1});
        if (!m_single[byte])
            addRow(decoder, byte);
    }
    buildReverse(decoder);
}

template <class Decoder>
void CodePageTable::addRow(Decoder& decoder, unsigned lead)
{
    std::array<char32_t, 256> row{};
    bool any = false;
    for (unsigned trail = 0x20; trail < 0x100; ++trail) {
        const char text[] = {static_cast<char>(lead), static_cast<char>(trail)};
        row[trail] = decoder.decode({text, 2});
        any = any || row[trail];
    }
    if (!any)
        return;
    m_rowOf[lead] = static_cast<std::int16_t>(m_pairs.size() / 256);
    m_pairs.insert(m_pairs.end(), row.begin(), row.end());
}

template <class Decoder>
void CodePageTable::buildReverse(Decoder& decoder)
{
    const auto enter = [&](char32_t c, unsigned code) {
        if (c >= 0x80 && !m_reverse.contains(c))
            m_reverse.emplace(c, static_cast<std::uint16_t>(decoder.encode(c).value_or(code)));
    };
    for (unsigned byte = 0x80; byte < 0x100; ++byte) {
        enter(m_single[byte], byte);
        for (unsigned trail = 0; isLead(byte) && trail < 0x100; ++trail)
            enter(pair(byte, trail), byte * 256 + trail);
    }
}

unsigned CodePageTable::bytes(char32_t character) const
{
    if (character < 0x80)
        return character;
    const auto found = m_reverse.find(character);
    return found == m_reverse.end() ? 0 : found->second;
}
