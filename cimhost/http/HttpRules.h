#pragma once

#include "cimhost/http/HttpReply.h"
#include "cimhost/http/HttpRequest.h"

namespace cimhost {

/// What a server lets in.
struct HttpRules {
    bool servesPages = false;  ///< GET and HEAD, beside POST
};

/// Judges a request by its head alone, before any of its body is read: method, Host, expectation
/// and length. Returns the status that refuses it, or 0.
int refusalOf(const HttpRequest& request, const HttpRules& rules = {}) noexcept;

/// True when the client wants "100 Continue" before it sends the body.
bool wantsContinue(const HttpRequest& request) noexcept;

/// Answers with the status that refuses a request, and the header that goes with it. Who uses
/// another method than those that are served is told `about` the server.
void refuse(HttpReply& reply, int status, const HttpRules& rules = {}, std::string_view about = {});

}  // namespace cimhost
