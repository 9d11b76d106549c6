// An LSU that is watched: how full it is, and how fast that changes.
#ifndef SOAPWRAPPER_PROBE_WATCH_WATCHED_LSU_H
#define SOAPWRAPPER_PROBE_WATCH_WATCHED_LSU_H

#include "plugin/host/host_records.h"
#include "probe/library/probe.h"
#include "probe/output/output.h"
#include "probe/output/problem.h"
#include "probe/output/records.h"
#include "probe/watch/watched.h"

#include <cstddef>
#include <string>
#include <vector>

namespace soapwrapper::probe
{

class WatchedLsu : public Watched
{
  public:
    static const WatchedColumns kColumns;

    // The name is known to fit.
    WatchedLsu(const Probe& probe, const stsp_lsu_v7_t& lsu) : probe_(probe), lsu_(lsu) {}

    std::vector<std::string> cells(const Output& output, Form form, std::size_t step) const override;
    Value value() const override;

  private:
    void ask() override;
    bool survives(const Problem& problem) override;

    const Probe& probe_;
    const stsp_lsu_v7_t lsu_;
    sts_lsu_info_v11_t info_ = {};
};

} // namespace soapwrapper::probe

#endif
