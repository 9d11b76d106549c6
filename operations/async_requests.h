// What the long operations on snapshots send: one description for each, shared by the request that is
// answered with an id and the request that bears a name of the host's. Each object owns what its request
// points at. Where a request has a name in it, the entry adds that.
#ifndef SOAPWRAPPER_OPERATIONS_ASYNC_REQUESTS_H
#define SOAPWRAPPER_OPERATIONS_ASYNC_REQUESTS_H

#include "conversion/field_text.h"
#include "conversion/wire_objects.h"
#include "plugin/base/handle_records.h"
#include "plugin/host/async_records.h"
#include "plugin/host/handles.h"
#include "plugin/host/host_records.h"

#include <cstdint>

namespace soapwrapper
{

// A volume, the snapshot to make of it, and the LSUs where that is to lie: what four of the operations begin
// with.
class WireSnapTargets
{
  public:
    WireSnapTargets(const stsp_server_t& server, const sts_volume_spec_v11_t& source,
                    const sts_snap_def_v11_t& target, const sts_lsu_spec_v11_t* targets,
                    std::uint32_t ntargets)
        : server_handle_(server.service_handle), source_(source), target_(target),
          targets_(targets, ntargets), ntargets_(ntargets)
    {
    }

    template <class Request>
    void fill(Request& request)
    {
        request.serverHandle = server_handle_.get();
        request.sourceVolSpec = source_.get();
        request.targetSnapDef = target_.get();
        request.targetLSUSpecs = targets_.get();
        request.ntargets = static_cast<int>(ntargets_);
    }

  private:
    WireServerHandle server_handle_;
    WireVolume source_;
    WireSnapDef target_;
    WireLsuSpecs targets_;
    std::uint32_t ntargets_;
};

template <class Request>
class CreateSnap
{
  public:
    CreateSnap(const stsp_server_t& server, const sts_volume_spec_v11_t& source,
               const sts_snap_def_v11_t& target, const sts_lsu_spec_v11_t* targets, std::uint32_t ntargets,
               const sts_imageset_t& imageset, std::int32_t pendingflag)
        : snap_targets_(server, source, target, targets, ntargets)
    {
        snap_targets_.fill(request);
        request.imageset = text_of(imageset.name);
        request.pendingflag = pendingflag;
    }

    Request request;

  private:
    WireSnapTargets snap_targets_;
};

// Says the same as a creation.
template <class Request>
using PrepareSnap = CreateSnap<Request>;

template <class Request>
class ValidateSnap
{
  public:
    ValidateSnap(const stsp_server_t& server, const sts_volume_spec_v11_t& source,
                 const sts_snap_def_v11_t& target, const sts_lsu_spec_v11_t* targets, std::uint32_t ntargets,
                 const char* topology)
        : snap_targets_(server, source, target, targets, ntargets)
    {
        snap_targets_.fill(request);
        request.targetTopology = topology;
    }

    Request request;

  private:
    WireSnapTargets snap_targets_;
};

template <class Request>
class ProvisionTopology
{
  public:
    ProvisionTopology(const stsp_server_t& server, const sts_volume_spec_v11_t& source,
                      const sts_snap_def_v11_t& target, const sts_lsu_spec_v11_t* targets,
                      std::uint32_t ntargets, const char* topology, const sts_imageset_t& imageset,
                      std::int32_t pendingflag)
        : snap_targets_(server, source, target, targets, ntargets)
    {
        snap_targets_.fill(request);
        request.targetTopology = topology;
        request.imageset = text_of(imageset.name);
        request.pendingflag = pendingflag;
    }

    Request request;

  private:
    WireSnapTargets snap_targets_;
};

template <class Request>
class CopySnap
{
  public:
    CopySnap(const stsp_lsu_v7_t& lsu, const sts_snap_def_v11_t& snap, const sts_lsu_spec_v11_t* targets,
             std::uint32_t ntargets, const sts_imageset_t& imageset, std::int32_t pendingflag)
        : lsu_(lsu), snap_(snap), targets_(targets, ntargets)
    {
        request.lsu = lsu_.get();
        request.snapDef = snap_.get();
        request.targetLSUSpecs = targets_.get();
        request.ntargets = static_cast<int>(ntargets);
        request.imageset = text_of(imageset.name);
        request.pendingflag = pendingflag;
    }

    Request request;

  private:
    WireLsu lsu_;
    WireSnapDef snap_;
    WireLsuSpecs targets_;
};

template <class Request>
class ImportSnap
{
  public:
    ImportSnap(const stsp_server_t& server, const sts_volume_spec_v11_t& source,
               const sts_snap_def_v11_t& source_snap, const sts_imageset_t& imageset,
               std::int32_t pendingflag)
        : server_handle_(server.service_handle), source_(source), source_snap_(source_snap)
    {
        request.serverHandle = server_handle_.get();
        request.sourceVolSpec = source_.get();
        request.sourceSnapDef = source_snap_.get();
        request.imageset = text_of(imageset.name);
        request.pendingflag = pendingflag;
    }

    Request request;

  private:
    WireServerHandle server_handle_;
    WireVolume source_;
    WireSnapDef source_snap_;
};

template <class Request>
class PostProcessSnap
{
  public:
    PostProcessSnap(const stsp_lsu_v7_t& lsu, const char* snap_name) : lsu_(lsu)
    {
        request.lsu = lsu_.get();
        request.snapName = snap_name;
    }

    Request request;

  private:
    WireLsu lsu_;
};

// The target's handle is sent in every case; without a target server its token is empty.
template <class Request>
class RollbackSnap
{
  public:
    RollbackSnap(const stsp_lsu_v7_t& lsu, const sts_snap_def_v11_t& snap, const stsp_server_t* target_server,
                 const sts_volume_spec_v11_t& target, const char* rollback_list, std::uint32_t num_rollbacks,
                 std::int32_t rollback_flag)
        : lsu_(lsu), snap_(snap), target_handle_(target_server ? target_server->service_handle : nullptr),
          target_(target), rollback_list_(rollback_list, num_rollbacks)
    {
        request.lsu = lsu_.get();
        request.snapDef = snap_.get();
        request.targetServerHandle = target_handle_.get();
        request.targetVolSpec = target_.get();
        request.rollbackList = rollback_list_.get();
        request.numRollbacks = static_cast<int>(num_rollbacks);
        request.rollbackFlag = rollback_flag;
    }

    Request request;

  private:
    WireLsu lsu_;
    WireSnapDef snap_;
    WireServerHandle target_handle_;
    WireVolume target_;
    WireRollbackList rollback_list_;
};

// The entries require a target server and don't test it: for a null one the token goes out empty.
template <class Request>
class GetSnapDiff
{
  public:
    GetSnapDiff(const stsp_server_t& server, const sts_snap_def_v11_t& snapshot,
                const stsp_server_t* target_server, const sts_volume_spec_v11_t* volumes,
                std::uint32_t num_rollbacks, std::int32_t diff_flag)
        : server_handle_(server.service_handle), snapshot_(snapshot),
          target_handle_(target_server ? target_server->service_handle : nullptr),
          volumes_(volumes, num_rollbacks)
    {
        request.serverHandle = server_handle_.get();
        request.snapshot = snapshot_.get();
        request.targetServerHandle = target_handle_.get();
        request.rollbackList = volumes_.get();
        request.numRollbacks = static_cast<int>(num_rollbacks);
        // A number in one family and a truth value in the other.
        request.diffFlag = static_cast<decltype(request.diffFlag)>(diff_flag);
    }

    Request request;

  private:
    WireServerHandle server_handle_;
    WireSnapDef snapshot_;
    WireServerHandle target_handle_;
    WireVolumeSpecs volumes_;
};

} // namespace soapwrapper

#endif
