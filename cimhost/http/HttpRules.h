#pragma once

#include "cimhost/http/HostNames.h"
#include "cimhost/http/HttpReply.h"
#include "cimhost/http/HttpRequest.h"

namespace cimhost {

/// What a server lets in.
struct HttpRules {
    bool servesPages = false;          ///< GET and HEAD, beside POST
    bool usesTls = false;              ///< a page of its own is one of https
    const HostNames* names = nullptr;  ///< that it may be asked by; none: all
};

/// Judges a request by its head alone, before any of its body is read: method, host, whose page it
/// comes from, expectation and length. Returns the status that refuses it, or 0.
int refusalOf(const HttpRequest& request, const HttpRules& rules = {});

/// True for what a browser sends for a page that is not this server's own, as its Origin or its
/// Sec-Fetch-Site tells. What is no browser sends neither.
bool isCrossSite(const HttpRequest& request, bool usesTls) noexcept;

/// True when the client wants "100 Continue" before it sends the body.
bool wantsContinue(const HttpRequest& request) noexcept;

/// Answers with the status that refuses a request, and with the header or the words that go with
/// it. Who uses another method than those that are served is told `about` the server.
void refuse(HttpReply& reply, int status, const HttpRules& rules = {}, std::string_view about = {});

}  // namespace cimhost
