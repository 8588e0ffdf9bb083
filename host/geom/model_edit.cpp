#include "host/geom/model_edit.h"

#include "host/geom/model_values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

namespace vk::geom {

namespace {

constexpr int kFirstWithWords = 200,
              kFirstWithNumbers = 700;  // versions whose records have words for senses, and numbers

// What a transform says: rows, place, scale, whether it turns, mirrors, shears.
struct TransformValues {
    std::array<double, 13> numbers{};
    std::array<bool, 3> flags{};
};

TransformValues valuesOf(const VcGeMatrix3d& m)
{
    TransformValues v;
    const double scale = std::cbrt(std::fabs(m.det()));
    bool turns = false;
    for (int i = 0; i < 3; ++i) {
        for (int k = 0; k < 3; ++k) {
            double& number = v.numbers[std::size_t(3 * i + k)];
            number = m.entry[k][i] / scale;
            if (std::fabs(number - std::round(number)) < 1e-15)
                number = std::round(number) + 0.0;
            turns |= number != (i == k ? 1 : 0);
        }
        v.numbers[std::size_t(9 + i)] = m.entry[i][3];
    }
    v.numbers[12] = std::fabs(scale - 1) < 1e-15 ? 1 : scale;
    v.flags = {turns, m.det() < 0, false};
    return v;
}

std::string written(double number)
{
    char buffer[32];
    return {buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr};
}

std::string writtenFlag(std::size_t which, bool value, int version)
{
    static constexpr const char* kNames[3][2] = {
        {"no_rotate", "rotate"}, {"no_reflect", "reflect"}, {"no_shear", "shear"}};
    return version < kFirstWithWords ? (value ? "1" : "0") : kNames[which][value];
}

std::string bytesOf(double number)
{
    std::string bytes(sizeof number, '\0');
    std::memcpy(bytes.data(), &number, sizeof number);
    return bytes;
}

std::string bytesOf(std::int64_t whole, int size)
{
    std::string bytes;
    for (int i = 0; i < size; ++i)
        bytes += static_cast<char>(whole >> 8 * i & 0xff);
    return bytes;
}

// Pieces of the data that are replaced by others, all of them at once.
class Edits {
public:
    explicit Edits(const std::string& data) : m_data(data) {}

    void replace(std::string_view part, std::string by)
    {
        m_edits.push_back({std::size_t(part.data() - m_data.data()), part.size(), std::move(by)});
    }
    void insert(std::size_t at, std::string text) { m_edits.push_back({at, 0, std::move(text)}); }

    std::string applied()
    {
        std::stable_sort(m_edits.begin(), m_edits.end(), [](const Edit& a, const Edit& b) { return a.at < b.at; });
        std::string out;
        std::size_t done = 0;
        for (const Edit& e : m_edits) {
            out.append(m_data, done, e.at - done);
            out += e.by;
            done = e.at + e.size;
        }
        return out.append(m_data, done);
    }

private:
    struct Edit {
        std::size_t at, size;
        std::string by;
    };
    const std::string& m_data;
    std::vector<Edit> m_edits;
};

class ModelMover {
public:
    ModelMover(const ModelRecords& records, const VcGeMatrix3d& by)
        : m_records(records), m_by(by), m_edits(records.data())
    {
    }

    std::optional<std::string> moved()
    {
        bool any = false;
        for (std::size_t i = 0; i < m_records.size(); ++i)
            if (m_records[i].type == "body") {
                if (!moveBody(m_records[i]))
                    return std::nullopt;
                any = true;
            }
        if (!any)
            return std::nullopt;
        if (m_added > 0)
            countRecords();
        return m_edits.applied();
    }

private:
    // The last pointer of a body is that to its transform.
    bool moveBody(const ModelRecord& body)
    {
        const auto tokens = m_records.tokens(body);
        const auto last = std::find_if(tokens.rbegin(), tokens.rend(),
                                       [](const ModelToken& t) { return t.kind == ModelToken::Pointer; });
        if (last == tokens.rend())
            return false;
        const ModelRecord* target = m_records.target(*last);
        if (!target && last->value < 0)
            return addTransform(*last);
        return target && target->type == "transform" && changeTransform(*target);
    }

    bool changeTransform(const ModelRecord& record)
    {
        const auto old = modelTransform(m_records, record);
        const auto numbers = transformNumbers(m_records, record);
        const auto tokens = m_records.tokens(record);
        const auto flags =
            old ? tokens.subspan(std::size_t(numbers.data() + numbers.size() - tokens.data())) : tokens.first(0);
        if (flags.size() < 3)
            return false;
        const TransformValues v = valuesOf(m_by * *old);
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            if (m_records.isBinary() && numbers[i].bytes.size() != sizeof(double))
                return false;
            m_edits.replace(numbers[i].bytes, m_records.isBinary() ? bytesOf(v.numbers[i]) : written(v.numbers[i]));
        }
        for (std::size_t i = 0; i < v.flags.size(); ++i)
            m_edits.replace(flags[i].bytes, flag(i, v.flags[i]));
        return true;
    }

    std::string flag(std::size_t which, bool value) const
    {
        constexpr char kTrue = 10, kFalse = 11;
        return m_records.isBinary() ? std::string(1, value ? kTrue : kFalse)
                                    : writtenFlag(which, value, m_records.version());
    }

    bool addTransform(const ModelToken& pointer)
    {
        const auto number = std::int64_t(m_records.size()) + m_added++;
        const TransformValues v = valuesOf(m_by);
        m_edits.replace(pointer.bytes,
                        m_records.isBinary() ? bytesOf(number, m_records.wordSize()) : "$" + std::to_string(number));
        m_edits.insert(m_records.endAt(), m_records.isBinary() ? binaryRecord(v) : textRecord(v));
        return true;
    }

    // Data of surfaces has no mark of its end, nor a line's end before it.
    std::string textRecord(const TransformValues& v) const
    {
        const std::uint32_t end = m_records.endAt();
        std::string record = end > 0 && m_records.data()[end - 1] == '\n' ? "" : "\n";
        record += m_records.version() >= kFirstWithNumbers ? "transform $-1 -1" : "transform $-1";
        for (const double number : v.numbers)
            record += " " + written(number);
        for (std::size_t i = 0; i < v.flags.size(); ++i)
            record += " " + flag(i, v.flags[i]);
        return record + " #\n";
    }

    std::string binaryRecord(const TransformValues& v) const
    {
        constexpr char kLong = 4, kDouble = 6, kPointer = 12, kName = 13, kEnd = 17, kVector = 20;
        const std::string none = bytesOf(std::int64_t(-1), m_records.wordSize());
        std::string record = std::string(1, kName) +
                             "\x09"
                             "transform" +
                             kPointer + none + kLong + none;
        for (std::size_t i = 0; i < v.numbers.size(); ++i) {
            if (i % 3 == 0)
                record += i < 12 ? kVector : kDouble;
            record += bytesOf(v.numbers[i]);
        }
        for (std::size_t i = 0; i < v.flags.size(); ++i)
            record += flag(i, v.flags[i]);
        return record + kEnd;
    }

    // The head may say how many records there are.
    void countRecords()
    {
        const std::string_view data = m_records.data();
        const std::int64_t count = std::int64_t(m_records.size()) + m_added;
        if (m_records.isBinary()) {
            const auto word = std::size_t(m_records.wordSize());
            const std::string_view stated = data.substr(15 + word, word);
            if (stated.find_first_not_of('\0') != std::string_view::npos)
                m_edits.replace(stated, bytesOf(count, m_records.wordSize()));
            return;
        }
        const std::size_t start = std::min(data.find(' '), data.size() - 1) + 1;
        const std::string_view stated = data.substr(start, data.find_first_of(" \n", start) - start);
        if (!stated.empty() && stated != "0")
            m_edits.replace(stated, std::to_string(count));
    }

    const ModelRecords& m_records;
    const VcGeMatrix3d& m_by;
    Edits m_edits;
    std::int64_t m_added = 0;
};

}  // namespace

std::optional<std::string> transformedModel(const ModelRecords& records, const VcGeMatrix3d& m)
{
    if (m.isSingular() || !m.isUniScaledOrtho())
        return std::nullopt;
    return ModelMover(records, m).moved();
}

}  // namespace vk::geom
