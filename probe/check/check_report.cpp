#include "probe/check/check_report.h"

#include "probe/output/output.h"
#include "probe/output/problem.h"
#include "probe/output/text.h"
#include "probe/output/width.h"

#include <unistd.h>

#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

constexpr std::size_t kMarkWidth = 5;
constexpr std::size_t kSubjectWidth = 16;

struct MarkText {
    const char* in_text;
    const char* result; // for scripts
    const char* colour; // how a terminal is told of it
};

MarkText text_of(Mark mark)
{
    switch (mark) {
    case Mark::kOk:
        return {"ok", "ok", "\033[32m"};
    case Mark::kWarning:
        return {"warn", "warning", "\033[33m"};
    case Mark::kWrong:
        return {"WRONG", "wrong", "\033[1;31m"};
    case Mark::kInfo:
        break;
    }
    return {"-", "info", ""};
}

std::string counted(std::size_t count, const char* one, const char* many)
{
    return std::to_string(count) + ' ' + (count == 1 ? one : many);
}

bool is_set(const char* variable)
{
    const char* value = std::getenv(variable);
    return value && *value != '\0';
}

// A table of one row, so that a line can be shown before those behind it are known.
void print_row(Output& output, std::vector<std::string> cells)
{
    Table table({});
    table.add(std::move(cells));
    output.print(table);
}

} // namespace

void CheckReport::begin_group(const std::string& name)
{
    const bool first = group_.empty();
    group_ = name;
    if (output_.format() != Format::kAligned) return;
    if (first) {
        print_row(output_, {name});
    } else {
        output_.title(name);
    }
}

void CheckReport::print_line(Mark mark, const std::string& subject, const std::string& text)
{
    const MarkText shown = text_of(mark);
    std::string cell = pad_behind(shown.in_text, kMarkWidth);
    if (coloured_ && *shown.colour != '\0') cell = shown.colour + cell + "\033[0m";
    print_row(output_, {"  " + cell + ' ' + pad_behind(subject, kSubjectWidth), text});
}

void CheckReport::add(Mark mark, const std::string& subject, const std::string& text,
                      const std::string& advice)
{
    if (mark == Mark::kWrong) ++wrong_;
    if (mark == Mark::kWarning) ++warnings_;
    const std::string shown_subject = clean_line(subject);
    const std::string shown_text = clean_line(text);
    const std::string shown_advice = clean_line(advice);
    const char* const result = text_of(mark).result;
    if (output_.format() == Format::kJson) {
        nlohmann::ordered_json check;
        check["group"] = group_;
        check["subject"] = shown_subject;
        check["result"] = result;
        check["text"] = shown_text;
        if (!advice.empty()) check["advice"] = shown_advice;
        output_.document()["checks"].push_back(std::move(check));
    } else if (output_.format() == Format::kSeparated) {
        print_row(output_, {group_, shown_subject, result, shown_text, shown_advice});
    } else {
        print_line(mark, shown_subject, shown_text);
        if (!advice.empty()) print_row(output_, {std::string(kMarkWidth + 3, ' ') + "-> " + shown_advice});
        output_.flush();
    }
}

void CheckReport::finish()
{
    output_.document()["ok"] = wrong_ == 0;
    std::string sum =
        wrong_ == 0 ? "Nothing is wrong" : counted(wrong_, "thing is wrong", "things are wrong");
    if (warnings_ > 0) sum += ", " + counted(warnings_, "warning", "warnings");
    if (wrong_ > 0) throw Problem(ExitCode::kUnsound, "check", std::nullopt, sum);
    output_.title(sum);
}

bool output_takes_colours()
{
    const char* const terminal = std::getenv("TERM");
    return isatty(STDOUT_FILENO) == 1 && !is_set("NO_COLOR") && terminal &&
           std::string_view(terminal) != "dumb";
}

} // namespace soapwrapper::probe
