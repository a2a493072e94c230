#pragma once

#include <cstdint>

#include "foundation/CObject.h"
#include "foundation/String.h"

namespace fenn {

// Boxed values: plain values wrapped as counted objects, so that a value list
// (and anything else that stores IBase) can hold them. A box is not locked;
// whoever shares one also shares the duty to lock it. Texts are boxed as
// their own IString (String::getText), so there is no string box here.

class IBool : public virtual IBase
{
public:
    virtual bool getValue() const = 0;
    virtual void setValue(bool value) = 0;
};

class IInt : public virtual IBase
{
public:
    virtual std::int32_t getValue() const = 0;
    virtual void setValue(std::int32_t value) = 0;
};

class IInt64 : public virtual IBase
{
public:
    virtual std::int64_t getValue() const = 0;
    virtual void setValue(std::int64_t value) = 0;
};

class IFloat : public virtual IBase
{
public:
    virtual float getValue() const = 0;
    virtual void setValue(float value) = 0;
};

class IDouble : public virtual IBase
{
public:
    virtual double getValue() const = 0;
    virtual void setValue(double value) = 0;
};

// toString gives "true" or "false".
class CBool : public CObject, public virtual IBool
{
public:
    explicit CBool(bool value = false) : m_value(value) {}
    bool getValue() const override { return m_value; }
    void setValue(bool value) override { m_value = value; }
    String toString() const override;

private:
    bool m_value;
};

// toString gives the decimal digits, with a leading '-' when negative.
class CInt : public CObject, public virtual IInt
{
public:
    explicit CInt(std::int32_t value = 0) : m_value(value) {}
    std::int32_t getValue() const override { return m_value; }
    void setValue(std::int32_t value) override { m_value = value; }
    String toString() const override;

private:
    std::int32_t m_value;
};

class CInt64 : public CObject, public virtual IInt64
{
public:
    explicit CInt64(std::int64_t value = 0) : m_value(value) {}
    std::int64_t getValue() const override { return m_value; }
    void setValue(std::int64_t value) override { m_value = value; }
    String toString() const override;

private:
    std::int64_t m_value;
};

// toString gives the shortest text that reads back as the same float.
class CFloat : public CObject, public virtual IFloat
{
public:
    explicit CFloat(float value = 0.0f) : m_value(value) {}
    float getValue() const override { return m_value; }
    void setValue(float value) override { m_value = value; }
    String toString() const override;

private:
    float m_value;
};

// toString gives the shortest text that reads back as the same double.
class CDouble : public CObject, public virtual IDouble
{
public:
    explicit CDouble(double value = 0.0) : m_value(value) {}
    double getValue() const override { return m_value; }
    void setValue(double value) override { m_value = value; }
    String toString() const override;

private:
    double m_value;
};

}  // namespace fenn
