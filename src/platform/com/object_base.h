// The base of every object of the library: one plain reference count shared by all the object's
// interfaces, and the module lock that keeps the library loaded while the object lives.
#pragma once

#include <cstdint>
#include <new>
#include <utility>

#include <qvr/com.h>

#include "platform/com/module.h"

namespace qvr {

template <class... Interfaces>
class ObjectBase : public Interfaces... {
public:
    ObjectBase() { module::lock(); }
    ObjectBase(const ObjectBase&) = delete;
    ObjectBase& operator=(const ObjectBase&) = delete;

    std::uint32_t AddRef() override { return ++refs_; }
    std::uint32_t Release() override {
        const std::uint32_t left = --refs_;
        if (left == 0) {
            // A reserved count during destruction, so that an add-ref and release made by the
            // destructor itself cannot run it a second time.
            refs_ = 0xC0000001u;
            delete this;
        }
        return left;
    }

protected:
    virtual ~ObjectBase() { module::unlock(); }

private:
    std::uint32_t refs_ = 0;
};

// Makes an object with one reference held by the returned Ref. Throws std::bad_alloc like new.
template <class T, class... Args>
Ref<T> makeObject(Args&&... args) {
    return Ref<T>(new T(std::forward<Args>(args)...));
}

} // namespace qvr
