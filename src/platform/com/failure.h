// Failures of the string and variant primitives travel as an exception that carries a status.
// Only the boundary of an operation turns it back into a status: no exception crosses the API.
#pragma once

#include <exception>
#include <new>

#include <qvr/com.h>

namespace qvr {

struct Failure : std::exception {
    explicit Failure(HRESULT s) : status(s) {}
    const char* what() const noexcept override { return "qvr::Failure"; }
    HRESULT status;
};

[[noreturn]] void raiseFailure(HRESULT status);

// Runs `f` (which returns a status) and turns any exception into a status: a raised failure into
// its own, an allocation failure into E_OUTOFMEMORY, anything else into E_UNEXPECTED.
template <class F>
HRESULT guarded(F&& f) noexcept {
    try {
        return f();
    } catch (const Failure& e) {
        return e.status;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

} // namespace qvr
