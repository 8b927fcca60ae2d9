// Compiles one expression of the formula language into a Program, with VBScript's precedence
// (from loosest): Imp, Eqv, Xor, Or, And, Not, comparisons (= <> < > <= >= Is), &, + -, Mod, \,
// * /, unary - +, ^. Binary operators are left-associative. Literal sub-expressions, calls of
// pure library functions on literals, and named constants are folded while compiling.
#pragma once

#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "vbscript/lexer.h"
#include "vbscript/program.h"

namespace qvr::vbscript {

class Parser {
public:
    // Compiles `text` under locale `lcid` (for folding). Throws ScriptError with the byte
    // position of the fault for a text that is not one expression.
    static std::shared_ptr<const Program> compile(std::string_view text, LCID lcid);
    // The same into `out`, which is cleared first and keeps its capacity: a caller that
    // compiles many texts one after the other reuses one program's storage.
    static void compileInto(std::string_view text, LCID lcid, Program& out);
    // Compiles `text` in which a literal starts at each offset of `holes` (ascending) whose value
    // is only known later. Each such literal becomes a constant of its own that nothing is folded
    // with; `holeConstants` receives their indices in the pool, in the order of `holes`. Throws
    // ScriptError as compile() does, and also when a sign applies straight to a hole: whether the
    // signed value still counts as a literal then depends on the value.
    static void compileTemplate(std::string_view text, std::span<const std::uint32_t> holes,
                                LCID lcid, Program& out, std::vector<std::uint32_t>* holeConstants);

private:
    // What the caller of a parse step needs to know of the sub-expression just emitted.
    struct Operand {
        bool literal = false; // written as a literal (counts for comparisons)
    };

    Parser(std::string_view text, LCID lcid, Program& out)
        : lexer_(text), lcid_(lcid), program_(&out) {}
    void run();

    void advance() { tok_ = lexer_.next(); }
    [[noreturn]] void fail(int number) const;
    void enter();
    void leave() { --depth_; }

    Operand parseImp();
    Operand parseExpression(int minPrecedence); // binary operators binding at least this tight
    Operand parseUnary();
    Operand parsePower();
    Operand parseSigned();
    Operand parsePrimary();
    Operand parseName();
    Operand parsePostfix(Operand operand, const std::string* path);
    int parseArguments(); // after "(": the arguments and ")"; returns their count

    // Emission with folding.
    // Pushes a constant built in place from `args` (a Variant's constructor arguments).
    template <class... Args>
    void emitConst(Args&&... args);
    void emitName(Op op, std::string text, std::uint32_t member, std::uint16_t argc);
    void emitRaise(int number, std::string_view detail);
    void emitCall(int builtin, int argc);
    void emitBinary(Op op, Operand left, Operand right);
    void emitUnary(Op op);
    void emit(Instr instr, int pops, int pushes);
    bool tailIsConst(int count) const;
    // Whether the current token is a literal that starts at a hole.
    bool atHole() const;
    std::uint32_t addName(std::string text, std::uint32_t member);

    Lexer lexer_;
    Token tok_;
    LCID lcid_;
    Program* program_;
    int depth_ = 0;
    std::uint32_t stack_ = 0;
    std::span<const std::uint32_t> holes_;
    std::vector<std::uint32_t>* holeConstants_ = nullptr;
};

} // namespace qvr::vbscript
