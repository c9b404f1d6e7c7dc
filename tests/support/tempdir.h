#pragma once

#include <string>

// A fresh folder under the test's temporary directory, removed with everything in it.
class TempDir {
  public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::string& path() const { return root; }
    std::string file(const std::string& name) const { return root + "/" + name; }

  private:
    std::string root;
};
