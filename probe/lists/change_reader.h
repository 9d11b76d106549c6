// Reads an open change list to its end and prints it.
#ifndef SOAPWRAPPER_PROBE_LISTS_CHANGE_READER_H
#define SOAPWRAPPER_PROBE_LISTS_CHANGE_READER_H

#include "plugin/host/handles.h"
#include "plugin/host/host_records.h"
#include "probe/library/probe.h"
#include "probe/lists/change_list.h"
#include "probe/lists/list_reader.h"
#include "probe/output/progress_line.h"
#include "probe/output/records.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace soapwrapper::probe
{

inline constexpr std::size_t kFilterSize = 1024;

struct ReadingOptions {
    std::vector<std::string> filters; // each shorter than kFilterSize
    bool escapes = false;             // paths are shown byte for byte
    ListOptions list;
};

class ChangeReader
{
  public:
    ChangeReader(const Probe& probe, const ReadingOptions& options, stsp_change_list_t* list);
    ~ChangeReader() { line_.clear(); }
    ChangeReader(const ChangeReader&) = delete;
    ChangeReader& operator=(const ChangeReader&) = delete;

    // An interruption is a problem like another.
    ListEnd read();

    // Shows the sum.
    void finish(const char* route, Extent extent);

  private:
    using Clock = std::chrono::steady_clock;

    double elapsed() const { return std::chrono::duration<double>(Clock::now() - start_).count(); }
    std::string state() const;
    int next();
    bool asks_for_a_pause() const;
    void take();
    void show_state();

    const Probe& probe_;
    const ListOptions& options_;
    stsp_change_list_t* const list_;
    const std::uint32_t filter_count_;
    const std::vector<char> filter_rows_;
    const std::unique_ptr<sts_file_attr_v11_t> entry_ = std::make_unique<sts_file_attr_v11_t>();
    ChangePrinter printer_;
    ProgressLine& line_;
    const Clock::time_point start_ = Clock::now();
    Clock::time_point shown_ = start_;
};

} // namespace soapwrapper::probe

#endif
