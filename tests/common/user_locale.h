// The process user locale set for one scope and put back when the scope ends, also when an
// assertion ends the test early, so that no later test runs under a locale it did not choose.
#pragma once

#include <qvr/variant.h>

namespace qvr::testing {

class UserLocale {
public:
    explicit UserLocale(LCID lcid) : saved_(GetUserLocale()) { SetUserLocale(lcid); }
    ~UserLocale() { SetUserLocale(saved_); }
    UserLocale(const UserLocale&) = delete;
    UserLocale& operator=(const UserLocale&) = delete;

private:
    LCID saved_;
};

} // namespace qvr::testing
