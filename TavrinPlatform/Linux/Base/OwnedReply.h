#pragma once

#include <cstdlib>
#include <memory>

namespace tavrin {

struct FreeReply {
  void operator()(void* reply) const { std::free(reply); }
};

/// A reply or event of the X library's, which is the caller's to free.
template <class Reply> using OwnedReply = std::unique_ptr<Reply, FreeReply>;

template <class Reply> OwnedReply<Reply> owned(Reply* reply) {
  return OwnedReply<Reply>(reply);
}

} // namespace tavrin
