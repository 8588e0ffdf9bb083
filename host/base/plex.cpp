#include "sdk/classlib_arrays.h"

CPlex* CPlex::Create(CPlex*& head, std::size_t count, std::size_t elementSize)
{
    static_assert(sizeof(CPlex) % alignof(std::max_align_t) == 0);
    auto* block = static_cast<CPlex*>(::operator new(sizeof(CPlex) + count * elementSize));
    block->m_next = head;
    return head = block;
}

void CPlex::FreeDataChain()
{
    for (CPlex* block = this; block;) {
        CPlex* next = block->m_next;
        ::operator delete(block);
        block = next;
    }
}
