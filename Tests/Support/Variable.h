#pragma once

// An environment variable with another value for one test.

#include <cstdlib>
#include <optional>
#include <string>

namespace qrv {

/// Restores the old value when it goes. nullptr: not set.
class Variable {
public:
    Variable(const char* name, const char* value) : name_(name) {
        if (const char* old = ::getenv(name)) old_ = old;
        set(value);
    }

    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

    ~Variable() { set(old_ ? old_->c_str() : nullptr); }

private:
    void set(const char* value) { value ? ::setenv(name_, value, 1) : ::unsetenv(name_); }

    const char* const name_;
    std::optional<std::string> old_;
};

} // namespace qrv
