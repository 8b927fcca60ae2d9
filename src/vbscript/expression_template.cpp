#include "vbscript/expression_template.h"

#include <algorithm>
#include <string>

#include "vbscript/interpreter.h"
#include "vbscript/lexer.h"
#include "vbscript/operators.h"
#include "vbscript/parser.h"
#include "vbscript/script_error.h"
#include "vbscript/text16.h"

namespace qvr::vbscript {
namespace {

// The literals that stand in the holes while the shape is checked and compiled: one of each
// kind a value can make. What can join a literal to its neighbours depends only on its first and
// last character, which every value of a kind shares with its probe: a digit or a sign and a
// digit, a double quote.
constexpr std::string_view kNumberProbe = "0";
constexpr std::string_view kTextProbe = "\"\"";

// The pieces joined with `probe` in every hole; `starts` receives where each hole begins.
std::string joined(std::span<const std::string_view> pieces, std::string_view probe,
                   std::vector<std::uint32_t>* starts) {
    std::string text;
    starts->clear();
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (i > 0) {
            starts->push_back(static_cast<std::uint32_t>(text.size()));
            text += probe;
        }
        text += pieces[i];
    }
    return text;
}

// Whether lexing `text` gives each probe, of `kind`, as exactly one token of its own.
bool probesStandAlone(const std::string& text, const std::vector<std::uint32_t>& starts,
                      std::uint32_t probeLength, Tok kind) {
    Lexer lexer(text);
    std::size_t next = 0; // the next hole to meet
    try {
        for (Token t = lexer.next(); t.kind != Tok::End && next < starts.size(); t = lexer.next()) {
            // Quoted tokens (texts, dates) give the place of what stands between the quotes.
            const bool quoted = t.kind == Tok::String || t.kind == Tok::Date;
            const std::uint32_t begin = quoted ? t.pos - 1 : t.pos;
            const std::uint32_t end = quoted ? t.pos + t.len + 1 : t.pos + t.len;
            if (end <= starts[next]) continue;
            // The first token that reaches into the hole must be the probe, exactly.
            if (begin != starts[next] || end != starts[next] + probeLength || t.kind != kind)
                return false;
            ++next;
        }
    } catch (const ScriptError&) {
        return false;
    }
    return next == starts.size();
}

// Whether `program` reaches any named item: its value would then depend on more than its text.
bool reachesItems(const Program& program) {
    return std::any_of(program.code.begin(), program.code.end(), [](const Instr& in) {
        return in.op == Op::Name || in.op == Op::CallName || in.op == Op::Member ||
               in.op == Op::Index;
    });
}

bool isNumberByte(char c) {
    return (c >= '0' && c <= '9') || c == '.' || c == 'e' || c == 'E' || c == '+' || c == '-';
}

} // namespace

std::unique_ptr<ExpressionTemplate>
ExpressionTemplate::build(std::span<const std::string_view> pieces, LCID lcid) {
    if (pieces.empty()) return nullptr;
    std::vector<std::uint32_t> starts;
    const std::string texts = joined(pieces, kTextProbe, &starts);
    if (!probesStandAlone(texts, starts, kTextProbe.size(), Tok::String)) return nullptr;
    const std::string numbers = joined(pieces, kNumberProbe, &starts);
    if (!probesStandAlone(numbers, starts, kNumberProbe.size(), Tok::Integer)) return nullptr;
    std::unique_ptr<ExpressionTemplate> shape(new ExpressionTemplate);
    try {
        Parser::compileTemplate(numbers, starts, lcid, shape->program_, &shape->holes_);
    } catch (const ScriptError&) {
        return nullptr;
    }
    if (reachesItems(shape->program_)) return nullptr;
    return shape;
}

bool ExpressionTemplate::fill(std::size_t hole, std::string_view value, bool quoted) {
    if (hole >= holes_.size() || firstMalformedByte(value) != std::string_view::npos) return false;
    Variant& slot = program_.constants[holes_[hole]];
    if (quoted) {
        // The text between the quotes, as the lexer would find it there.
        if (value.find_first_of("\"\r\n") != std::string_view::npos) return false;
        slot = Variant(value);
        return true;
    }
    if (value.empty() || !std::all_of(value.begin(), value.end(), isNumberByte)) return false;
    // A digit first, after at most one sign: nothing else joins the text before it.
    const std::size_t digit = value[0] == '+' || value[0] == '-' ? 1 : 0;
    if (digit >= value.size() || value[digit] < '0' || value[digit] > '9') return false;
    Lexer lexer(value);
    try {
        Token sign;
        if (digit) sign = lexer.next();
        const Token number = lexer.next();
        if (lexer.next().kind != Tok::End) return false;
        Variant literal;
        // Typed as the parser types a literal.
        if (number.kind == Tok::Integer)
            literal = number.longType ? Variant(number.integer)
                                      : Variant(static_cast<std::int16_t>(number.integer));
        else if (number.kind == Tok::Float)
            literal = Variant(number.number);
        else
            return false;
        if (sign.kind == Tok::Minus) applyUnary(Op::Neg, literal);
        slot = std::move(literal);
        return true;
    } catch (const ScriptError&) {
        return false;
    }
}

bool ExpressionTemplate::evaluate(LCID lcid, Variant* result) const {
    if (lcid != program_.lcid) return false;
    // A fresh generator, as a fresh engine has.
    RandomState random;
    CallContext context{lcid, &random};
    Interpreter interpreter({}, context);
    Variant value;
    try {
        interpreter.run(program_, &value);
    } catch (const ScriptError&) {
        return false;
    }
    *result = std::move(value);
    return true;
}

} // namespace qvr::vbscript
