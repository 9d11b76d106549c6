// A long operation at the service: by the id that the service made up, or by the name that the user chose.
#ifndef SOAPWRAPPER_PROBE_OPERATIONS_OPERATION_H
#define SOAPWRAPPER_PROBE_OPERATIONS_OPERATION_H

#include "plugin/host/async_records.h"
#include "plugin/host/handles.h"
#include "probe/library/probe.h"
#include "probe/output/problem.h"
#include "probe/output/records.h"

#include <string>

namespace soapwrapper::probe
{

class Operation
{
  public:
    virtual ~Operation() = default;
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

    // For a sentence: "operation OP-1".
    std::string title() const { return "operation " + identity(); }

    // Which operation it is, for the output.
    virtual void tell(Properties& properties) const = 0;

    // The same for the JSON document.
    virtual void tell(Value& document) const = 0;

    // Asks the service once how it stands, and returns the entry's status.
    virtual int ask(sts_async_snap_result_t& answer) const = 0;

    // What becomes of it when nobody waits any longer. The result tells.
    virtual Problem abandon() const = 0;

  protected:
    explicit Operation(const Probe& probe) : probe_(probe) {}
    const Probe& probe() const { return probe_; }

    // Id or name, clean.
    virtual std::string identity() const = 0;

  private:
    const Probe& probe_;
};

class OperationWithId : public Operation
{
  public:
    // The library's handle of a started operation, which nobody ever gives back. The lack of one is thrown.
    OperationWithId(const Probe& probe, stsp_async_t* handle);

    // An operation that was started at another time, perhaps by somebody else.
    OperationWithId(const Probe& probe, stsp_server_t* server, const std::string& id);

    // Stops it. A refusal is thrown.
    void cancel() const;

    void tell(Properties& properties) const override;
    void tell(Value& document) const override;
    int ask(sts_async_snap_result_t& answer) const override;
    Problem abandon() const override; // cancels it

    // Entries that the library lacks are a Problem: what couldn't be followed isn't started.
    static void check(const Probe& probe);

  private:
    std::string identity() const override;

    std::string id_; // of an operation that this library didn't start
    stsp_async_t own_ = {};
    stsp_async_t* const handle_;
};

class OperationWithName : public Operation
{
  public:
    // The name is known to fit.
    OperationWithName(const Probe& probe, stsp_server_t* server, const std::string& name);

    const sts_opname_t& name() const { return name_; }

    void tell(Properties& properties) const override;
    void tell(Value& document) const override;
    int ask(sts_async_snap_result_t& answer) const override;
    Problem abandon() const override; // the library can't stop it

    static void check(const Probe& probe);

  private:
    std::string identity() const override;

    stsp_server_t* const server_;
    sts_opname_t name_ = {};
};

} // namespace soapwrapper::probe

#endif
