#include "bridge/link_turns.h"

#include <algorithm>
#include <utility>

namespace bridge {

void LinkTurns::ask(int client, int link, std::function<void()> start) {
    auto found = find(client);
    if (found == clients_.end()) found = clients_.insert(found, Client{client, {}, {}});
    found->waiting.push_back({link, std::move(start)});
    serve();
}

void LinkTurns::done(int client, int link) {
    const auto found = find(client);
    if (found == clients_.end()) return;
    std::erase_if(found->waiting, [link](const Request& request) { return request.link == link; });
    searching_ -= found->searching.erase(link);
    if (found->waiting.empty() && found->searching.empty()) clients_.erase(found);
    serve();
}

void LinkTurns::leave(int client) {
    const auto found = find(client);
    if (found == clients_.end()) return;
    searching_ -= found->searching.size();
    clients_.erase(found);
}

void LinkTurns::serve() {
    // A search that ends at once comes here again; the loop goes on with what it left.
    if (std::exchange(serving_, true)) return;
    while (searching_ < kMost) {
        const auto next = std::ranges::find_if(clients_, [](const Client& client) {
            return !client.waiting.empty() && client.searching.size() < kMostOfOne;
        });
        if (next == clients_.end()) break;
        const Request request = std::move(next->waiting.front());
        next->waiting.pop_front();
        next->searching.insert(request.link);
        ++searching_;
        clients_.splice(clients_.end(), clients_, next);
        request.start();
    }
    serving_ = false;
}

std::list<LinkTurns::Client>::iterator LinkTurns::find(int client) {
    return std::ranges::find(clients_, client, &Client::number);
}

} // namespace bridge
