#include "vbscript/parser.h"

#include <algorithm>

#include "platform/variant/ole_date.h"
#include "vbscript/builtins.h"
#include "vbscript/operators.h"
#include "vbscript/script_error.h"
#include "vbscript/text16.h"

namespace qvr::vbscript {
namespace {

// Deeper nesting than this is refused rather than risking the native stack.
constexpr int kMaxDepth = 256;
constexpr int kMaxArguments = 1024;

// Binding strength of each binary operator, loosest first; Not (between And and the
// comparisons) stands between them, and ^ and the signs, which bind tighter than any of them,
// are handled apart.
constexpr int kComparisonPrecedence = 7;

struct Binary {
    int precedence; // 0 for a token that is no binary operator
    Op op;
};

constexpr Binary binaryOf(Tok t) {
    switch (t) {
    case Tok::Imp: return {1, Op::Imp};
    case Tok::Eqv: return {2, Op::Eqv};
    case Tok::Xor: return {3, Op::Xor};
    case Tok::Or: return {4, Op::Or};
    case Tok::And: return {5, Op::And};
    case Tok::Equal: return {kComparisonPrecedence, Op::Eq};
    case Tok::NotEqual: return {kComparisonPrecedence, Op::Ne};
    case Tok::Less: return {kComparisonPrecedence, Op::Lt};
    case Tok::Greater: return {kComparisonPrecedence, Op::Gt};
    case Tok::LessEqual: return {kComparisonPrecedence, Op::Le};
    case Tok::GreaterEqual: return {kComparisonPrecedence, Op::Ge};
    case Tok::Is: return {kComparisonPrecedence, Op::Is};
    case Tok::Ampersand: return {8, Op::Concat};
    case Tok::Plus: return {9, Op::Add};
    case Tok::Minus: return {9, Op::Sub};
    case Tok::Mod: return {10, Op::Mod};
    case Tok::Backslash: return {11, Op::IntDiv};
    case Tok::Star: return {12, Op::Mul};
    case Tok::Slash: return {12, Op::Div};
    default: return {0, Op::Const};
    }
}

// Keywords that may still name a member after a dot ("Item.End" is a valid member access).
bool isWordToken(Tok t) {
    return t == Tok::Identifier || t >= Tok::Mod;
}

bool isNumeric(const Variant& v) {
    switch (v.vt()) {
    case VT_I2:
    case VT_I4:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_UI1:
    case VT_DECIMAL: return true;
    default: return false;
    }
}

} // namespace

template <class... Args>
void Parser::emitConst(Args&&... args) {
    program_->constants.emplace_back(std::forward<Args>(args)...);
    emit(Instr{Op::Const, 0, 0, static_cast<std::uint32_t>(program_->constants.size() - 1)}, 0, 1);
}

std::shared_ptr<const Program> Parser::compile(std::string_view text, LCID lcid) {
    auto program = std::make_shared<Program>();
    compileInto(text, lcid, *program);
    return program;
}

void Parser::compileInto(std::string_view text, LCID lcid, Program& out) {
    out.code.clear();
    out.constants.clear();
    out.names.clear();
    out.maxStack = 0;
    out.lcid = lcid;
    // Room for a typical formula, so that emitting rarely reallocates.
    std::size_t room = std::min<std::size_t>(text.size() / 2 + 4, 64);
    out.code.reserve(room);
    out.constants.reserve(room);
    Parser p(text, lcid, out);
    p.run();
}

void Parser::compileTemplate(std::string_view text, std::span<const std::uint32_t> holes, LCID lcid,
                             Program& out, std::vector<std::uint32_t>* holeConstants) {
    holeConstants->clear();
    out = Program{};
    out.lcid = lcid;
    Parser p(text, lcid, out);
    p.holes_ = holes;
    p.holeConstants_ = holeConstants;
    p.run();
    // Every hole must have been read as a literal operand.
    if (holeConstants->size() != holes.size()) throw ScriptError(kSyntaxError);
}

bool Parser::atHole() const {
    if (holes_.empty()) return false;
    // A string token's position is that of its text, behind the opening quote.
    const std::uint32_t start = tok_.kind == Tok::String ? tok_.pos - 1 : tok_.pos;
    return std::binary_search(holes_.begin(), holes_.end(), start);
}

void Parser::run() {
    // Formula text is UTF-8 throughout, in strings and comments as well: a byte that breaks it
    // is refused where it stands rather than carried into a value.
    std::size_t malformed = firstMalformedByte(lexer_.text());
    if (malformed != std::string_view::npos)
        throw ScriptError(kInvalidCharacter, {}, static_cast<std::int32_t>(malformed));
    advance();
    while (tok_.kind == Tok::Newline) advance();
    if (tok_.kind == Tok::End) {
        emitConst(Variant());
    } else {
        parseImp();
        while (tok_.kind == Tok::Newline) advance();
        if (tok_.kind != Tok::End) fail(kExpectedEndOfStatement);
    }
}

void Parser::fail(int number) const {
    std::uint32_t pos = tok_.pos;
    if ((tok_.kind == Tok::String || tok_.kind == Tok::Date) && pos > 0) --pos;
    throw ScriptError(number, {}, static_cast<std::int32_t>(pos));
}

void Parser::enter() {
    if (++depth_ > kMaxDepth)
        throw ScriptError(kOutOfStackSpace, {}, static_cast<std::int32_t>(tok_.pos));
}

Parser::Operand Parser::parseImp() {
    return parseExpression(1);
}

Parser::Operand Parser::parseExpression(int minPrecedence) {
    enter();
    Operand left = parseUnary();
    for (;;) {
        Binary b = binaryOf(tok_.kind);
        if (b.precedence < minPrecedence || b.precedence == 0) break;
        advance();
        Operand right = parseExpression(b.precedence + 1); // left-associative
        emitBinary(b.op, left, right);
        left = Operand{};
    }
    leave();
    return left;
}

Parser::Operand Parser::parseUnary() {
    if (tok_.kind != Tok::Not) return parsePower();
    // Not takes a comparison: Not a = b is Not (a = b).
    advance();
    parseExpression(kComparisonPrecedence);
    emitUnary(Op::Not);
    return Operand{};
}

Parser::Operand Parser::parsePower() {
    Operand left = parseSigned();
    while (tok_.kind == Tok::Caret) {
        advance();
        Operand right = parseSigned(); // the exponent may carry its own sign: 2 ^ -1
        emitBinary(Op::Pow, left, right);
        left = Operand{};
    }
    return left;
}

// A sign binds tighter than ^: -2 ^ 2 is (-2) ^ 2.
Parser::Operand Parser::parseSigned() {
    if (tok_.kind != Tok::Minus && tok_.kind != Tok::Plus) return parsePrimary();
    bool negate = tok_.kind == Tok::Minus;
    advance();
    enter();
    // A sign may still stand before Not (-Not x), which then takes its comparison.
    Operand operand = tok_.kind == Tok::Not ? parseUnary() : parseSigned();
    leave();
    if (!negate) return operand;
    if (holeConstants_ && !holeConstants_->empty() && operand.literal &&
        program_->code.back().op == Op::Const && program_->code.back().a == holeConstants_->back())
        throw ScriptError(kSyntaxError, {}, static_cast<std::int32_t>(tok_.pos));
    emitUnary(Op::Neg);
    // A negative number literal stays a literal.
    const Instr& last = program_->code.back();
    return Operand{operand.literal && last.op == Op::Const &&
                   isNumeric(program_->constants[last.a])};
}

Parser::Operand Parser::parsePrimary() {
    if ((tok_.kind == Tok::Integer || tok_.kind == Tok::Float || tok_.kind == Tok::String) &&
        atHole()) {
        // Its value comes later; until then it is a constant of its own.
        emitConst();
        holeConstants_->push_back(program_->code.back().a);
        advance();
        return Operand{true};
    }
    switch (tok_.kind) {
    case Tok::Integer:
        if (tok_.longType)
            emitConst(tok_.integer);
        else
            emitConst(static_cast<std::int16_t>(tok_.integer));
        advance();
        return Operand{true};
    case Tok::Float:
        emitConst(tok_.number);
        advance();
        return Operand{true};
    case Tok::String:
        if (tok_.hasDoubledQuotes)
            emitConst(String(lexer_.stringValue(tok_)));
        else
            emitConst(lexer_.spelling(tok_)); // the text between the quotes as it stands
        advance();
        return Operand{true};
    case Tok::Date: {
        // Date literals are always read in the US form, whatever the user's locale.
        DATE d = 0;
        if (FAILED(parseDate(lexer_.spelling(tok_), LCID_EN_US, &d))) fail(kSyntaxError);
        emitConst(Variant::date(d));
        advance();
        return Operand{true};
    }
    case Tok::True:
    case Tok::False:
        emitConst(tok_.kind == Tok::True);
        advance();
        return Operand{true};
    case Tok::Empty:
        emitConst();
        advance();
        return Operand{true};
    case Tok::Null:
        emitConst(Variant::null());
        advance();
        return Operand{true};
    case Tok::Nothing:
        emitConst(static_cast<IUnknown*>(nullptr));
        advance();
        return Operand{};
    case Tok::LParen: {
        advance();
        Operand inner = parseImp();
        if (tok_.kind != Tok::RParen) fail(kExpectedCloseParen);
        advance();
        return inner;
    }
    case Tok::Identifier: return parseName();
    default: fail(kExpectedExpression);
    }
}

Parser::Operand Parser::parseName() {
    std::string name(lexer_.spelling(tok_));
    int builtin = tok_.builtin; // never set for a [bracketed] name
    advance();
    Operand result;
    if (tok_.kind == Tok::LParen) {
        advance();
        int argc = parseArguments();
        if (builtin >= 0) {
            emitCall(builtin, argc);
            result.literal = builtinAt(builtin).kind == kConstant;
        } else {
            emitName(Op::CallName, name, 0, static_cast<std::uint16_t>(argc));
        }
    } else if (builtin >= 0) {
        const Builtin& b = builtinAt(builtin);
        if (b.minArgs > 0) {
            emitRaise(kWrongArgumentCount, b.name);
        } else {
            emitCall(builtin, 0);
            result.literal = b.kind == kConstant;
        }
    } else {
        emitName(Op::Name, name, 0, 0);
    }
    if (tok_.kind == Tok::Dot || tok_.kind == Tok::LParen) {
        if (builtin >= 0) name = std::string(builtinAt(builtin).name);
        return parsePostfix(Operand{}, &name);
    }
    return result;
}

Parser::Operand Parser::parsePostfix(Operand operand, const std::string* path) {
    std::string text = *path;
    for (;;) {
        if (tok_.kind == Tok::Dot) {
            advance();
            if (!isWordToken(tok_.kind)) fail(kExpectedIdentifier);
            auto member = static_cast<std::uint32_t>(text.size() + 1);
            text += '.';
            text += lexer_.spelling(tok_);
            advance();
            int argc = 0;
            if (tok_.kind == Tok::LParen) {
                advance();
                argc = parseArguments();
            }
            emitName(Op::Member, text, member, static_cast<std::uint16_t>(argc));
            operand = Operand{};
        } else if (tok_.kind == Tok::LParen) {
            advance();
            int argc = parseArguments();
            emit(Instr{Op::Index, 0, static_cast<std::uint16_t>(argc), addName(text, 0)}, argc + 1,
                 1);
            operand = Operand{};
        } else {
            return operand;
        }
    }
}

int Parser::parseArguments() {
    int argc = 0;
    if (tok_.kind == Tok::RParen) {
        advance();
        return 0;
    }
    for (;;) {
        if (tok_.kind == Tok::Comma || tok_.kind == Tok::RParen)
            emitConst(Variant::missing());
        else
            parseImp();
        if (++argc > kMaxArguments) fail(kSyntaxError);
        if (tok_.kind == Tok::Comma) {
            advance();
            continue;
        }
        if (tok_.kind != Tok::RParen) fail(kExpectedCloseParen);
        advance();
        return argc;
    }
}

// ---- Emission ----

void Parser::emit(Instr instr, int pops, int pushes) {
    program_->code.push_back(instr);
    stack_ = stack_ - static_cast<std::uint32_t>(pops) + static_cast<std::uint32_t>(pushes);
    program_->maxStack = std::max(program_->maxStack, stack_);
}

std::uint32_t Parser::addName(std::string text, std::uint32_t member) {
    program_->names.push_back(NameRef{std::move(text), member});
    return static_cast<std::uint32_t>(program_->names.size() - 1);
}

void Parser::emitName(Op op, std::string text, std::uint32_t member, std::uint16_t argc) {
    std::uint32_t index = addName(std::move(text), member);
    int pops = argc + (op == Op::Member ? 1 : 0);
    emit(Instr{op, 0, argc, index}, pops, 1);
}

void Parser::emitRaise(int number, std::string_view detail) {
    std::uint32_t index = addName(std::string(detail), 0);
    emit(Instr{Op::Raise, 1, static_cast<std::uint16_t>(index), static_cast<std::uint32_t>(number)},
         0, 1);
}

bool Parser::tailIsConst(int count) const {
    const auto& code = program_->code;
    if (static_cast<int>(code.size()) < count) return false;
    std::size_t pool = program_->constants.size();
    // A hole is never folded: holes are the latest constants they were when made, and folding
    // only ever takes constants from the end of the pool.
    if (holeConstants_ && !holeConstants_->empty() &&
        holeConstants_->back() + static_cast<std::size_t>(count) >= pool)
        return false;
    for (int i = 0; i < count; ++i) {
        const Instr& in = code[code.size() - static_cast<std::size_t>(count) + i];
        if (in.op != Op::Const || in.a != pool - static_cast<std::size_t>(count) + i) return false;
    }
    return true;
}

void Parser::emitCall(int builtin, int argc) {
    const Builtin& b = builtinAt(builtin);
    if (b.kind == kConstant && argc == 0) {
        emitConst(constantValue(b));
        return;
    }
    if (argc < b.minArgs || argc > b.maxArgs) {
        // The arguments are evaluated, then the call fails.
        std::uint32_t index = addName(std::string(b.name), 0);
        emit(Instr{Op::Raise, 1, static_cast<std::uint16_t>(index),
                   static_cast<std::uint32_t>(kWrongArgumentCount)},
             argc, 1);
        return;
    }
    if (b.kind != kVolatile && tailIsConst(argc)) {
        // The constants themselves are the arguments: a function moves from an argument only
        // where it can no longer fail, so a failed call leaves them intact for run time.
        auto& pool = program_->constants;
        Variant out;
        CallContext cx{lcid_, nullptr};
        bool folded = true;
        try {
            b.fn(cx, pool.data() + (pool.size() - static_cast<std::size_t>(argc)), argc, &out);
        } catch (const ScriptError&) {
            folded = false; // the error belongs to run time
        }
        if (folded) {
            pool.resize(pool.size() - static_cast<std::size_t>(argc));
            program_->code.resize(program_->code.size() - static_cast<std::size_t>(argc));
            stack_ -= static_cast<std::uint32_t>(argc);
            emitConst(std::move(out));
            return;
        }
    }
    emit(Instr{Op::Call, 0, static_cast<std::uint16_t>(argc), static_cast<std::uint32_t>(builtin)},
         argc, 1);
}

void Parser::emitBinary(Op op, Operand left, Operand right) {
    std::uint8_t flags = static_cast<std::uint8_t>((left.literal ? kLeftLiteral : 0) |
                                                   (right.literal ? kRightLiteral : 0));
    if (tailIsConst(2)) {
        auto& pool = program_->constants;
        Variant& l = pool[pool.size() - 2];
        try {
            applyBinary(op, flags, l, pool.back(), lcid_, &l);
            pool.pop_back();
            program_->code.pop_back();
            --stack_;
            return;
        } catch (const ScriptError&) {
            // left for run time, which raises the same error
        }
    }
    emit(Instr{op, flags, 0, 0}, 2, 1);
}

void Parser::emitUnary(Op op) {
    if (tailIsConst(1)) {
        try {
            applyUnary(op, program_->constants.back()); // unchanged when it fails
            return;
        } catch (const ScriptError&) {
        }
    }
    emit(Instr{op, 0, 0, 0}, 1, 1);
}

} // namespace qvr::vbscript
