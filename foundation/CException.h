#pragma once

#include <exception>

#include "foundation/CObject.h"
#include "foundation/P.h"
#include "foundation/String.h"

// Gives an error class its counted copy (clone) and the throw of its own
// type (raise), which is how an error travels from a worker thread to the
// thread that reports it.
#define FENN_ERROR_CLASS(Class)                                                                                        \
public:                                                                                                                \
    ::fenn::P<Class> clone() const                                                                                     \
    {                                                                                                                  \
        return ::fenn::P<Class>(cloneObject(), ::fenn::adopt);                                                         \
    }                                                                                                                  \
    [[noreturn]] void raise() const override                                                                           \
    {                                                                                                                  \
        throw *this;                                                                                                   \
    }                                                                                                                  \
                                                                                                                       \
protected:                                                                                                             \
    Class* cloneObject() const override                                                                                \
    {                                                                                                                  \
        return new Class(*this);                                                                                       \
    }                                                                                                                  \
                                                                                                                       \
public:

namespace fenn {

// Root of the error tree: a title and a user-readable description. Errors
// are thrown by value and caught by reference; their count stays at 1 unless
// a clone is taken.
class CException : public std::exception, public CObject
{
public:
    CException(String title, String description);

    // The description as locale multibyte text. The pointer stays valid until
    // this thread asks another error for its text.
    const char* what() const noexcept override;
    virtual String getTitle() const { return m_title; }
    virtual String getDescription() const { return m_description; }

    P<CException> clone() const { return P<CException>(cloneObject(), adopt); }
    [[noreturn]] virtual void raise() const { throw *this; }

protected:
    virtual CException* cloneObject() const { return new CException(*this); }
    void setDescription(String description) { m_description = std::move(description); }

private:
    String m_title;
    String m_description;
};

}  // namespace fenn
