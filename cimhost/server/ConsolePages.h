#pragma once

#include "cimhost/http/HttpHandler.h"
#include "cimhost/server/ConsoleFile.h"

#include <span>

namespace cimhost {

/// Answers GET and HEAD: the files of the console's page, and the events that the page listens to.
/// Nothing in it may be framed, and the page may load nothing but these files and speak to nobody
/// but this server. Safe from several threads.
class ConsolePages final : public HttpHandler {
public:
    /// The events are asked for /events once there is room for a reply that stays open; without
    /// them there is no such page. Files and events outlive this object.
    explicit ConsolePages(std::span<const ConsoleFile> files,
                          HttpHandler* events = nullptr) noexcept
        : _files(files), _events(events) {}

    void handle(const HttpRequest& request, HttpReply& reply) override;

private:
    void _handleEvents(const HttpRequest& request, HttpReply& reply) const;

    std::span<const ConsoleFile> _files;
    HttpHandler* _events;
};

}  // namespace cimhost
