#ifndef UTILSlotPool_H
#define UTILSlotPool_H

#include <cstddef>
#include <cstdlib>
#include <new>
#include <vector>

// Slots of one size carved from large blocks, for the small objects a model
// holds by the million: no malloc header per object (a 32-byte object takes
// 32 bytes, not a 48-byte chunk), and objects made one after the other sit
// side by side, so that walking a model built in order walks memory in order.
//
// A freed slot goes on a free list and is reused by the next allocation of
// the same size; the blocks are kept until the process ends (freeing a model
// and building the next one reuses them), and never freed before: objects
// held by other statics may be deleted during the process's exit. A class opts in through its own
// operator new and delete:
//     static void* operator new(size_t size) { return UTILSlotPool<sizeof(T)>::allocate(size); }
//     static void operator delete(void* p) { UTILSlotPool<sizeof(T)>::release(p); }
// Single-threaded, as the model is.
template <size_t Size> class UTILSlotPool {
    static_assert(Size >= sizeof(void*), "a free slot holds the link to the next");
    static_assert(Size % alignof(void*) == 0, "slots stay aligned");

public:
    // A slot for an object of `size` bytes, which must be Size: a class
    // using the pool is final, so no derived class asks for more.
    static void* allocate(size_t size) {
        if (size != Size) throw std::bad_alloc();
        State& s = state();
        if (s.free) {
            Free* slot = s.free;
            s.free = slot->next;
            return slot;
        }
        if (s.left == 0) grow(s);
        void* slot = s.next;
        s.next += Size;
        --s.left;
        return slot;
    }

    static void release(void* slot) {
        if (!slot) return;
        State& s = state();
        auto* freed = static_cast<Free*>(slot);
        freed->next = s.free;
        s.free = freed;
    }

    // The heap the pool holds in blocks, for the census.
    static size_t heapBytes() { return state().blocks.size() * kBlockBytes; }

private:
    struct Free {
        Free* next;
    };
    static constexpr size_t kSlotsPerBlock = 2048;
    static constexpr size_t kBlockBytes = Size * kSlotsPerBlock;

    struct State {
        std::vector<char*> blocks;
        char* next = nullptr;
        size_t left = 0;
        Free* free = nullptr;
    };

    static State& state() {
        static State* s = new State();
        return *s;
    }

    static void grow(State& s) {
        s.blocks.reserve(s.blocks.size() + 1);
        char* block = static_cast<char*>(std::malloc(kBlockBytes));
        if (!block) throw std::bad_alloc();
        s.blocks.push_back(block);
        s.next = block;
        s.left = kSlotsPerBlock;
    }
};

#endif
