// The SOAP side: one request in, one answer out.
#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_SERVICE_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_SERVICE_H

#include "simulator/front/http.h"
#include "simulator/front/request_log.h"
#include "simulator/service/interference.h"
#include "simulator/service/text_encoding.h"
#include "simulator/storage/current_model.h"
#include "simulator/traffic/dump_folder.h"
#include "simulator/traffic/recorder.h"

namespace soapwrapper::simulator
{

// What all requests share.
struct Backend {
    CurrentModel& model;
    Interference& interference;
    RequestLog& log;
    Recorder& recorder;
    TextEncoding text_encoding = TextEncoding::kLatin1;
    DumpFolder* dump = nullptr; // if there is one, each request and reply is written there
};

// Never throws; any thread may call.
Answer serve_request(const Backend& backend, const Request& request);

} // namespace soapwrapper::simulator

#endif
