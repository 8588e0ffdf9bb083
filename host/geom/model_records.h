// The records of the data that solids, regions and surfaces carry from their modeller, in its text form or its binary one.
//
// A record is a type and values. Records point to each other by their number from 0; vectors come as three numbers. What
// cannot be understood ends the record that it stands in; where the end of all is missing, the last whole record is it.
#pragma once

#include "host/base/api.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vk::geom {

struct ModelToken {
    enum Kind : std::uint8_t { Pointer, Number, Truth, Word, Open, Close };
    Kind kind = Word;
    double value = 0;        // a number, the number of a record or below 0 for none, 1 for true
    std::string_view bytes;  // as it stands in the data; of a vector's number its own eight
};

struct ModelRecord {
    std::string type;  // "straight-curve"
    std::uint32_t first = 0, count = 0;
    std::uint32_t typeAt = 0;  // where the record begins in the data
};

class VKHOST_API ModelRecords {
public:
    explicit ModelRecords(std::string data);
    ModelRecords(const ModelRecords&) = delete;
    ModelRecords& operator=(const ModelRecords&) = delete;

    const std::string& data() const { return m_data; }
    bool isBinary() const { return m_wordSize != 0; }
    int wordSize() const { return m_wordSize; }  // of whole numbers and pointers in binary data
    int version() const { return m_version; }    // 400 for 4.0
    std::uint32_t endAt() const { return m_endAt; }

    std::size_t size() const { return m_records.size(); }
    const ModelRecord& operator[](std::size_t i) const { return m_records[i]; }
    std::span<const ModelToken> tokens(const ModelRecord& r) const { return {m_tokens.data() + r.first, r.count}; }
    // Null for a pointer to nothing.
    const ModelRecord* target(const ModelToken& pointer) const;
    // What stands in braces and is named by the number of its opening brace, as "{ ref 3 }" does it.
    std::span<const ModelToken> shared(double number) const;

private:
    friend class ModelTextReader;
    friend class ModelBinaryReader;
    void endRecord(std::string type, std::uint32_t firstToken, std::uint32_t typeAt);
    void listShared(const ModelRecord& record);

    std::string m_data;
    std::vector<ModelToken> m_tokens;
    std::vector<ModelRecord> m_records;
    struct Braces {
        std::uint32_t first, end;  // the tokens inside
    };
    std::vector<Braces> m_shared;  // in the order of their opening
    int m_wordSize = 0, m_version = 0;
    std::uint32_t m_endAt = 0;  // where the mark of the end stands, or the data ends
};

// The text form is stored with its letters exchanged; the exchange undoes itself.
VKHOST_API std::string modelTextExchanged(std::string_view text);

VKHOST_API bool isBinaryModel(std::string_view data);

}  // namespace vk::geom
