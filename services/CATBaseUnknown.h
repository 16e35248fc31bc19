#ifndef CATBaseUnknown_H
#define CATBaseUnknown_H

// Reference-counted host object. A new object holds one reference; the last
// Release destroys it.
class CATBaseUnknown {
public:
    CATBaseUnknown() = default;
    CATBaseUnknown(const CATBaseUnknown&) = delete;
    CATBaseUnknown& operator=(const CATBaseUnknown&) = delete;

    unsigned long AddRef() { return ++_refCount; }
    unsigned long Release() {
        unsigned long left = --_refCount;
        if (left == 0) delete this;
        return left;
    }
    unsigned long RefCount() const { return _refCount; }

protected:
    virtual ~CATBaseUnknown() = default;

private:
    unsigned long _refCount = 1;
};

#endif
