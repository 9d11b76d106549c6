// What the API answers with.
#ifndef SOAPWRAPPER_SIMULATOR_API_ANSWERS_H
#define SOAPWRAPPER_SIMULATOR_API_ANSWERS_H

#include "simulator/front/http.h"

#include <nlohmann/json_fwd.hpp>

#include <stdexcept>
#include <string>

namespace soapwrapper::simulator
{

constexpr int kHttpOk = 200;
constexpr int kHttpCreated = 201;
constexpr int kHttpNoContent = 204;
constexpr int kHttpBadRequest = 400;
constexpr int kHttpForbidden = 403;
constexpr int kHttpNotFound = 404;
constexpr int kHttpMethodNotAllowed = 405;
constexpr int kHttpConflict = 409;
constexpr int kHttpUnsupportedMediaType = 415;
constexpr int kHttpUnavailable = 503;

// Why a request isn't done, thrown by whoever finds it.
class ApiError : public std::runtime_error
{
  public:
    ApiError(int status, const std::string& text) : std::runtime_error(text), status_(status) {}

    int status() const { return status_; }

  private:
    int status_;
};

// Nobody may keep it, and no browser takes it for anything else than its type tells.
Answer answer_with(int status, std::string content_type, std::string body);

// Names are the clients' bytes: what isn't UTF-8 among them becomes U+FFFD.
std::string dumped(const nlohmann::json& json);

Answer json_answer(const nlohmann::json& json, int status = kHttpOk);
Answer no_content();
Answer error_answer(int status, const std::string& text);

} // namespace soapwrapper::simulator

#endif
