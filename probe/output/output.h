// What a command prints: tables for people, bare fields for scripts, or one JSON document.
#ifndef SOAPWRAPPER_PROBE_OUTPUT_OUTPUT_H
#define SOAPWRAPPER_PROBE_OUTPUT_OUTPUT_H

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{

class Problem;

// Grows when a member of a document goes, or means something else; a new member doesn't make it grow.
inline constexpr int kDocumentVersion = 1;

enum class Format {
    kAligned,   // columns under headings
    kSeparated, // fields with a separator between them, no headings
    kJson
};

// Rows of cleaned cells under headings.
class Table
{
  public:
    explicit Table(std::vector<std::string> headings) : headings_(std::move(headings)) {}

    void add(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }
    // The column holds numbers: people compare them by their last digits.
    void align_right(std::size_t column) { right_.insert(column); }
    bool empty() const { return rows_.empty(); }

  private:
    friend class Output;
    std::vector<std::string> headings_; // none: the rows stand alone
    std::vector<std::vector<std::string>> rows_;
    std::set<std::size_t> right_;
};

class Output
{
  public:
    Output(std::ostream& stream, Format format, std::string separator, bool exact_sizes = false)
        : stream_(stream), format_(format), separator_(std::move(separator)), exact_sizes_(exact_sizes)
    {
    }

    Format format() const { return format_; }

    // The user wants sizes to the byte.
    bool exact_sizes() const { return exact_sizes_; }

    // A size as a cell of a table: readable, or for scripts and with exact sizes the bare number.
    std::string size(std::int64_t bytes) const;

    // The same within a sentence.
    std::string size_in_words(std::int64_t bytes) const;

    // In either of the text forms; an empty cell of an aligned table shows as "-". What can't be written is
    // thrown, as soon as it is known.
    void print(const Table& table);

    // A line between two tables, with an empty one ahead of it; in the aligned form only.
    void title(const std::string& text);

    // The document of the JSON form: commands fill it, finish() prints it. Each document begins with the
    // version of the form.
    nlohmann::ordered_json& document() { return document_; }

    // From here on the JSON form is a line for each document, printed as they come; one that is left at the
    // end, such as an error, is a line too.
    void use_lines() { lines_ = true; }
    void print_line(const nlohmann::ordered_json& document);

    // False: not all of it could be written.
    bool flush();

    // The same, and a failure is thrown.
    void deliver();

    // Puts the problem beside what the document holds already.
    void add_problem(const Problem& problem);

    // Ends the output. False: not all of it could be written.
    bool finish();

  private:
    bool for_scripts() const { return format_ != Format::kAligned; }
    void print_text(const nlohmann::ordered_json& document, int indentation);
    void require_good() const;
    void print_aligned(const Table& table);
    void print_separated(const Table& table);

    std::ostream& stream_;
    const Format format_;
    const std::string separator_;
    const bool exact_sizes_;
    bool lines_ = false;
    nlohmann::ordered_json document_ = nlohmann::ordered_json::object();
};

// The output couldn't be written, for this reason of the system; 0: it isn't known.
Problem output_problem(int error = 0);

// The problem as people read it: `NAME(number): what it means`, and below it, indented, what the service or
// the library said.
void print_problem(const Problem& problem, std::ostream& stream);

} // namespace soapwrapper::probe

#endif
