#ifndef UTILObjectPool_H
#define UTILObjectPool_H

#include <cstddef>
#include <vector>

// Holds objects of any class and deletes each with its own type's delete, so
// that classes without virtual destructors are destroyed correctly.
class UTILObjectPool {
public:
    UTILObjectPool() = default;
    UTILObjectPool(const UTILObjectPool&) = delete;
    UTILObjectPool& operator=(const UTILObjectPool&) = delete;
    ~UTILObjectPool() { freeAll(); }

    // Takes `object` over and answers it: owned by the pool from now on,
    // valid until freeAll or the pool's destruction.
    template <typename T> T* adopt(T* object) {
        if (object)
            _held.push_back(Held{object, &deleteAs<T>});
        return object;
    }

    // Deletes everything held, last adopted first. An object adopted while
    // this runs (a destructor handing something over) is deleted too.
    void freeAll() {
        while (!_held.empty()) {
            Held h = _held.back();
            _held.pop_back();
            h.destroy(h.object);
        }
        _held.shrink_to_fit();
    }

    size_t size() const { return _held.size(); }

private:
    struct Held {
        void* object;
        void (*destroy)(void*);
    };

    template <typename T> static void deleteAs(void* object) { delete static_cast<T*>(object); }

    std::vector<Held> _held;
};

#endif
