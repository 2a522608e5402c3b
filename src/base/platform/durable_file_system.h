#pragma once
// Files on a boat computer that may lose power at any moment: a track flush is on the disk
// when it reports success (fdatasync), and a replaced file goes through a synced temporary
// file and a rename, so the old or the new version survives a crash, never a torn one.

#include "base/file_system.h"

namespace wakeline {

class DurableFileSystem : public StdFileSystem {
  public:
    Status AppendDurably(const std::string& path, std::string_view bytes) override;
    Status ReplaceFile(const std::string& path, std::string_view bytes) override;
};

}  // namespace wakeline
