// The compiled form of one expression: a short stack program over a pool of constants. Literal
// sub-expressions are folded at compile time, so a formula whose column values were pasted in as
// numbers usually compiles to a single constant. A program is immutable once built and may be
// shared between engines through the parse cache.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <qvr/variant.h>

namespace qvr::vbscript {

enum class Op : std::uint8_t {
    Const,    // push constants[a]
    Name,     // push the named item names[a], or Empty when no item has that name
    CallName, // call names[a] with argc arguments: the default member of a named item
    Member,   // pop argc arguments and an object, push object.names[a](arguments)
    Call,     // pop argc arguments, push builtin a (arguments)
    Index,    // pop argc subscripts and an array, push the element
    Raise,    // raise error a, naming names[argc] when flags is 1
    Neg,
    Not,
    Pow,
    Mul,
    Div,
    IntDiv,
    Mod,
    Add,
    Sub,
    Concat,
    Eq,
    Ne,
    Lt,
    Gt,
    Le,
    Ge,
    Is,
    And,
    Or,
    Xor,
    Eqv,
    Imp,
};

// Comparison flags: which operand was written as a literal. VBScript converts the other operand
// to the literal's kind when a number meets a string.
constexpr std::uint8_t kLeftLiteral = 1;
constexpr std::uint8_t kRightLiteral = 2;

struct Instr {
    Op op;
    std::uint8_t flags = 0;
    std::uint16_t argc = 0;
    std::uint32_t a = 0;
};

// A name as written: for a member access the whole path ("Item.Member"), with `member` the
// offset of the member's own name.
struct NameRef {
    std::string text;
    std::uint32_t member = 0;
    std::string_view base() const {
        return std::string_view(text).substr(0, member ? member - 1 : text.size());
    }
    std::string_view memberName() const { return std::string_view(text).substr(member); }
};

struct Program {
    std::vector<Instr> code;
    std::vector<Variant> constants;
    std::vector<NameRef> names;
    std::uint32_t maxStack = 0;
    LCID lcid = 0; // the locale constants were folded under

    // True when the whole expression folded into one constant.
    bool isConstant() const { return code.size() == 1 && code[0].op == Op::Const; }
};

} // namespace qvr::vbscript
