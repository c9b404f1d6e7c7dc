#pragma once

#include <string>
#include <vector>

// Stands in for the camera service: listens on an abstract local socket, bound the way Android
// binds one, and hands back what clients sent once they are gone.
class SocketListener {
  public:
    explicit SocketListener(const std::string& name);
    ~SocketListener();
    SocketListener(const SocketListener&) = delete;
    SocketListener& operator=(const SocketListener&) = delete;

    // The payload of every connection made so far, in order, each read until the client closed.
    std::vector<std::string> received();

  private:
    int fd = -1;
};
