// An expression with holes where literals go: the text around the holes is lexed, its words looked
// up and the whole compiled once, and each evaluation only sets the holes' values and runs the
// program. Evaluating it with a hole set from a value is evaluating the text with the value
// pasted into the hole, as long as fill() accepts the value:
//
//     auto shape = ExpressionTemplate::build({"", " * ", " + 1"}, GetUserLocale());
//     shape->fill(0, "2.5", false);   // as if "2.5" stood there
//     shape->fill(1, "mm", true);     // as if "\"mm\"" stood there
//     shape->evaluate(GetUserLocale(), &value);
//
// A template is refused (build() gives null) when a hole does not stand where a literal operand
// can, when the text around it could join a literal to a neighbouring token, when a sign applies
// straight to a hole, or when the expression reaches a named item. Everything refused, and every
// value fill() does not accept, is left to the textual road, which decides as it always has.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include <qvr/variant.h>

#include "vbscript/program.h"

namespace qvr::vbscript {

class ExpressionTemplate {
public:
    // `pieces` are the texts before, between and after the holes (one more than holes), compiled
    // under `lcid`. Null when the shape cannot be a template.
    static std::unique_ptr<ExpressionTemplate> build(std::span<const std::string_view> pieces,
                                                     LCID lcid);

    std::size_t holeCount() const { return holes_.size(); }

    // Sets hole `hole` to the literal that `value` makes when pasted there: between double
    // quotes when `quoted`, else bare. False (and the hole unchanged) when the pasted text could
    // read as anything but one literal, possibly signed: a quote or line break in a quoted value,
    // anything but a decimal number in a bare one, a byte that is no UTF-8.
    bool fill(std::size_t hole, std::string_view value, bool quoted);

    // The value of the expression with the holes as filled, under `lcid`. False when it cannot
    // be given here: another locale than the one compiled under, or a run-time error (whose
    // report is the textual road's).
    bool evaluate(LCID lcid, Variant* result) const;

private:
    ExpressionTemplate() = default;

    Program program_;
    std::vector<std::uint32_t> holes_; // the constant of each hole
};

} // namespace qvr::vbscript
