// Arrays and lists of the class library. Reading outside an array gives a value of its own, writing there is lost.
#pragma once

#include "classlib_string.h"

#include <new>
#include <vector>

template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray {
public:
    int GetSize() const { return static_cast<int>(m_items.size()); }
    int GetCount() const { return GetSize(); }
    int GetUpperBound() const { return GetSize() - 1; }
    bool IsEmpty() const { return m_items.empty(); }
    void SetSize(int size, int growBy = -1) { m_items.resize(size > 0 ? static_cast<std::size_t>(size) : 0); }
    void FreeExtra() { m_items.shrink_to_fit(); }
    void RemoveAll() { m_items.clear(); }

    const TYPE& GetAt(int index) const { return (*this)[index]; }
    TYPE& GetAt(int index) { return (*this)[index]; }
    TYPE& ElementAt(int index) { return (*this)[index]; }
    void SetAt(int index, ARG_TYPE value) { (*this)[index] = value; }
    void SetAtGrow(int index, ARG_TYPE value)
    {
        if (index >= GetSize())
            SetSize(index + 1);
        SetAt(index, value);
    }
    TYPE& operator[](int index) { return within(index) ? m_items[static_cast<std::size_t>(index)] : outside(); }
    const TYPE& operator[](int index) const
    {
        return within(index) ? m_items[static_cast<std::size_t>(index)] : outside();
    }
    TYPE* GetData() { return m_items.data(); }
    const TYPE* GetData() const { return m_items.data(); }

    // The index of the new element, or of the first of them.
    int Add(ARG_TYPE value)
    {
        m_items.push_back(TYPE(value));
        return GetSize() - 1;
    }
    int Append(const CArray& other)
    {
        const int first = GetSize();
        const std::vector<TYPE> items = other.m_items;
        m_items.insert(m_items.end(), items.begin(), items.end());
        return first;
    }
    void Copy(const CArray& other) { m_items = other.m_items; }
    void InsertAt(int index, ARG_TYPE value, int count = 1)
    {
        if (index < 0 || count <= 0)
            return;
        const TYPE item(value);
        if (index > GetSize())
            SetSize(index);
        m_items.insert(m_items.begin() + index, static_cast<std::size_t>(count), item);
    }
    void RemoveAt(int index, int count = 1)
    {
        if (!within(index) || count <= 0)
            return;
        const int last = count < GetSize() - index ? index + count : GetSize();
        m_items.erase(m_items.begin() + index, m_items.begin() + last);
    }

private:
    std::vector<TYPE> m_items;

    bool within(int index) const { return index >= 0 && index < GetSize(); }
    static TYPE& outside()
    {
        static thread_local TYPE value;
        value = TYPE();
        return value;
    }
};

class CByteArray : public CArray<std::uint8_t, std::uint8_t> {};
class CWordArray : public CArray<std::uint16_t, std::uint16_t> {};
class CPtrArray : public CArray<void*, void*> {};
class CStringArray : public CArray<CStdStrW, const CStdStrW&> {};

// A chain of memory blocks that the nodes of a list are cut from.
class VK_SDK CPlex {
public:
    static CPlex* Create(CPlex*& head, std::size_t count, std::size_t elementSize);
    void FreeDataChain();
    void* data() { return this + 1; }

private:
    CPlex* m_next;
    void* m_padding;  // keeps data() aligned for any element
};

struct VkListPosition;
using POSITION = VkListPosition*;

template <class TYPE, class ARG_TYPE = const TYPE&>
class CList {
public:
    explicit CList(int blockSize = 10) : m_blockSize(blockSize > 0 ? blockSize : 10) {}
    CList(const CList& other) : m_blockSize(other.m_blockSize) { AddTail(other); }
    CList& operator=(const CList& other)
    {
        if (this != &other) {
            RemoveAll();
            AddTail(other);
        }
        return *this;
    }
    ~CList() { RemoveAll(); }

    int GetCount() const { return m_count; }
    int GetSize() const { return m_count; }
    bool IsEmpty() const { return m_count == 0; }

    POSITION GetHeadPosition() const { return position(m_head); }
    POSITION GetTailPosition() const { return position(m_tail); }
    // The element at the place, which then moves on; null behind the last.
    TYPE& GetNext(POSITION& at) const
    {
        Node* n = node(at);
        at = position(n->next);
        return n->value;
    }
    TYPE& GetPrev(POSITION& at) const
    {
        Node* n = node(at);
        at = position(n->previous);
        return n->value;
    }
    TYPE& GetAt(POSITION at) const { return node(at)->value; }
    void SetAt(POSITION at, ARG_TYPE value) { node(at)->value = value; }
    TYPE& GetHead() const { return m_head->value; }
    TYPE& GetTail() const { return m_tail->value; }

    POSITION AddHead(ARG_TYPE value) { return insert(nullptr, m_head, value); }
    POSITION AddTail(ARG_TYPE value) { return insert(m_tail, nullptr, value); }
    void AddTail(const CList& other)
    {
        int left = other.m_count;  // a list may be appended to itself
        for (Node* n = other.m_head; left > 0; n = n->next, --left)
            AddTail(n->value);
    }
    POSITION InsertBefore(POSITION at, ARG_TYPE value)
    {
        return at ? insert(node(at)->previous, node(at), value) : AddHead(value);
    }
    POSITION InsertAfter(POSITION at, ARG_TYPE value)
    {
        return at ? insert(node(at), node(at)->next, value) : AddTail(value);
    }

    void RemoveAt(POSITION at)
    {
        if (at)
            remove(node(at));
    }
    TYPE RemoveHead()
    {
        TYPE value = m_head->value;
        remove(m_head);
        return value;
    }
    TYPE RemoveTail()
    {
        TYPE value = m_tail->value;
        remove(m_tail);
        return value;
    }
    void RemoveAll()
    {
        for (Node* n = m_head; n; n = n->next)
            n->value.~TYPE();
        m_head = m_tail = m_free = nullptr;
        m_count = 0;
        if (m_blocks)
            m_blocks->FreeDataChain();
        m_blocks = nullptr;
    }

    POSITION Find(ARG_TYPE value, POSITION after = nullptr) const
    {
        for (Node* n = after ? node(after)->next : m_head; n; n = n->next)
            if (n->value == value)
                return position(n);
        return nullptr;
    }
    POSITION FindIndex(int index) const
    {
        if (index < 0 || index >= m_count)
            return nullptr;
        Node* n = m_head;
        while (index-- > 0)
            n = n->next;
        return position(n);
    }

private:
    struct Node {
        Node* next;
        Node* previous;
        TYPE value;
    };
    Node* m_head = nullptr;
    Node* m_tail = nullptr;
    Node* m_free = nullptr;  // linked by next, without values
    CPlex* m_blocks = nullptr;
    int m_count = 0;
    int m_blockSize;

    static POSITION position(Node* n) { return reinterpret_cast<POSITION>(n); }
    static Node* node(POSITION at) { return reinterpret_cast<Node*>(at); }

    Node* allocate()
    {
        if (!m_free) {
            auto* nodes = static_cast<Node*>(
                CPlex::Create(m_blocks, static_cast<std::size_t>(m_blockSize), sizeof(Node))->data());
            for (int i = m_blockSize - 1; i >= 0; --i) {
                nodes[i].next = m_free;
                m_free = &nodes[i];
            }
        }
        Node* n = m_free;
        m_free = n->next;
        return n;
    }
    POSITION insert(Node* previous, Node* next, ARG_TYPE value)
    {
        Node* n = allocate();
        new (&n->value) TYPE(value);
        n->previous = previous;
        n->next = next;
        (previous ? previous->next : m_head) = n;
        (next ? next->previous : m_tail) = n;
        ++m_count;
        return position(n);
    }
    void remove(Node* n)
    {
        (n->previous ? n->previous->next : m_head) = n->next;
        (n->next ? n->next->previous : m_tail) = n->previous;
        n->value.~TYPE();
        n->next = m_free;
        m_free = n;
        --m_count;
    }
};
