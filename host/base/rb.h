// Chains of result buffers: building, copying, releasing. A node owns its string or its bytes.
#pragma once

#include "host/base/api.h"
#include "sdk/resbuf.h"

#include <cstdarg>
#include <memory>
#include <string>
#include <string_view>

VKHOST_API resbuf* newRb(int code);
VKHOST_API void releaseRb(resbuf* chain);

struct RbRelease {
    void operator()(resbuf* chain) const { releaseRb(chain); }
};
using RbPtr = std::unique_ptr<resbuf, RbRelease>;

// Setters replace what the node held. Those that need memory give false when there is none or the value is too long.
VKHOST_API bool setRbString(resbuf& node, std::wstring_view text);
VKHOST_API bool setRbUtf8(resbuf& node, std::string_view text);
VKHOST_API bool setRbBytes(resbuf& node, std::string_view bytes);
VKHOST_API void setRbPoint(resbuf& node, double x, double y, double z);
VKHOST_API void setRbInt64(resbuf& node, std::int64_t value);

// The value of a node, by the kind of its code; zero or empty where the node holds another kind.
VKHOST_API std::int64_t rbInteger(const resbuf& node);
VKHOST_API double rbReal(const resbuf& node);  // integers are widened
VKHOST_API std::string rbUtf8(const resbuf& node);
VKHOST_API std::string_view rbBytes(const resbuf& node);

VKHOST_API RbPtr copyRbNode(const resbuf& node);
VKHOST_API RbPtr copyRbChain(const resbuf* chain);
VKHOST_API bool sameRbValue(const resbuf& a, const resbuf& b);

// Appends at the end in constant time.
class VKHOST_API RbBuilder {
public:
    resbuf& add(int code);
    void addString(int code, std::wstring_view text);
    void addUtf8(int code, std::string_view text);
    void addReal(int code, double value);
    void addInteger(int code, std::int64_t value);  // stored by the kind of the code
    void addPoint(int code, double x, double y, double z = 0);
    void addName(int code, const vds_name name);
    void addBytes(int code, std::string_view bytes);
    void append(RbPtr chain);
    bool empty() const { return !m_head; }
    RbPtr take();

private:
    RbPtr m_head;
    resbuf* m_tail = nullptr;
};

// Builds a chain from pairs of code and value, ended by RTNONE or 0. A code of no known kind gives null, since the
// size of its argument cannot be told. Reals are double, points and names pointers, 160 to 169 std::int64_t,
// binary values pointers to vds_binary, all other numbers int.
VKHOST_API RbPtr buildRbChain(int firstCode, std::va_list arguments);
