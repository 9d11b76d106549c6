#include "probe/output/output.h"

#include "probe/output/problem.h"
#include "probe/output/readable.h"
#include "probe/output/text.h"
#include "probe/output/width.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

constexpr std::size_t kGap = 2;

std::string shown(const std::string& cell)
{
    return cell.empty() ? "-" : cell;
}

void widen(std::vector<std::size_t>& widths, const std::vector<std::string>& cells)
{
    widths.resize(std::max(widths.size(), cells.size()));
    for (std::size_t i = 0; i < cells.size(); ++i) {
        widths[i] = std::max(widths[i], display_width(shown(cells[i])));
    }
}

void print_row(std::ostream& stream, const std::vector<std::string>& cells,
               const std::vector<std::size_t>& widths, const std::set<std::size_t>& right)
{
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const std::string cell = shown(cells[i]);
        const bool is_last = i + 1 == cells.size();
        if (i > 0) stream << std::string(kGap, ' ');
        if (right.count(i) != 0) {
            stream << pad_ahead(cell, widths[i]);
        } else {
            stream << (is_last ? cell : pad_behind(cell, widths[i]));
        }
    }
    stream << '\n';
}

std::string joined(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines) {
        if (!text.empty()) text += '\n';
        text += line;
    }
    return text;
}

} // namespace

std::string Output::size(std::int64_t bytes) const
{
    const bool is_bare = for_scripts() || exact_sizes_ || bytes < 0; // less than nothing is no size
    return is_bare ? std::to_string(bytes) : readable_bytes(bytes);
}

std::string Output::size_in_words(std::int64_t bytes) const
{
    return amount_of_bytes(bytes, for_scripts() || exact_sizes_);
}

void Output::print(const Table& table)
{
    if (format_ == Format::kAligned) print_aligned(table);
    if (format_ == Format::kSeparated) print_separated(table);
    require_good();
}

void Output::print_aligned(const Table& table)
{
    std::vector<std::size_t> widths;
    widen(widths, table.headings_);
    for (const auto& row : table.rows_) widen(widths, row);
    if (!table.headings_.empty()) print_row(stream_, table.headings_, widths, table.right_);
    for (const auto& row : table.rows_) print_row(stream_, row, widths, table.right_);
}

void Output::print_separated(const Table& table)
{
    for (const auto& row : table.rows_) {
        for (std::size_t i = 0; i < row.size(); ++i) stream_ << (i == 0 ? "" : separator_) << row[i];
        stream_ << '\n';
    }
}

void Output::title(const std::string& text)
{
    if (format_ == Format::kAligned) stream_ << '\n' << text << '\n';
}

void Output::add_problem(const Problem& problem)
{
    nlohmann::ordered_json error;
    error["name"] = problem.name();
    error["status"] = nullptr;
    if (problem.status()) error["status"] = *problem.status();
    error["meaning"] = clean_line(problem.meaning());
    error["detail"] = joined(clean_lines(problem.detail()));
    if (!problem.url().empty()) error["url"] = clean_line(problem.url());
    for (const Attempt& attempt : problem.attempts()) {
        error["attempts"].push_back({{"url", clean_line(attempt.url)},
                                     {"failure", clean_line(attempt.failure)},
                                     {"times", attempt.times}});
    }
    document_["error"] = std::move(error);
}

void Output::print_line(const nlohmann::ordered_json& document)
{
    if (format_ == Format::kJson) print_text(document, -1);
    require_good();
}

void Output::require_good() const
{
    if (!stream_.good()) throw Problem(output_problem());
}

// The version goes ahead of the text: to put it first into a document would copy each of millions.
void Output::print_text(const nlohmann::ordered_json& document, int indentation)
{
    const std::string text = document.dump(indentation);
    const bool lines = indentation >= 0;
    stream_ << (lines ? "{\n  \"schema\": " : "{\"schema\":") << kDocumentVersion;
    if (document.empty()) {
        stream_ << (lines ? "\n}\n" : "}\n");
    } else {
        stream_ << ',' << std::string_view(text).substr(1) << '\n';
    }
}

bool Output::flush()
{
    stream_.flush();
    return stream_.good();
}

void Output::deliver()
{
    stream_.flush();
    require_good();
}

bool Output::finish()
{
    if (!lines_) {
        if (format_ == Format::kJson) print_text(document_, 2);
    } else if (!document_.empty() && format_ == Format::kJson) {
        print_text(document_, -1);
    }
    return flush();
}

Problem output_problem(int error)
{
    return Problem(ExitCode::kOperation, "output", std::nullopt, "it could not be written",
                   error == 0 ? "" : std::strerror(error));
}

namespace
{

void print_attempts(const std::vector<Attempt>& attempts, std::ostream& stream)
{
    if (!attempts.empty()) stream << "    Attempts:\n";
    for (const Attempt& attempt : attempts) {
        stream << "      " << clean_line(attempt.url) << ": " << clean_line(attempt.failure);
        if (attempt.times == 2) stream << " (tried twice)";
        if (attempt.times > 2) stream << " (tried " << attempt.times << " times)";
        stream << '\n';
    }
}

} // namespace

void print_problem(const Problem& problem, std::ostream& stream)
{
    if (problem.code() == ExitCode::kUsage) stream << "soapwrapper-probe: ";
    stream << problem.name();
    if (problem.status()) stream << '(' << *problem.status() << ')';
    stream << ": " << clean_line(problem.meaning()) << '\n';
    if (!problem.url().empty()) stream << "    at " << clean_line(problem.url()) << '\n';
    for (const std::string& line : clean_lines(problem.detail())) stream << "    " << line << '\n';
    print_attempts(problem.attempts(), stream);
    stream.flush();
}

} // namespace soapwrapper::probe
