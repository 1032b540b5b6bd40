#pragma once

#include <sys/socket.h>
#include <sys/uio.h>

#include <cstring>
#include <type_traits>

#include "helper/protocol/descriptor.h"
#include "helper/protocol/protocol.h"

// One record in one message, with a descriptor where it needs one. Both ends include this, so that neither
// links the other's code.
namespace helper {

/// Room for one descriptor beside a message.
union Attachment {
  cmsghdr header;
  char room[CMSG_SPACE(sizeof(int))];
};

template <typename Record>
bool Send(int socket, const Record& record, int descriptor = -1) {
  static_assert(std::is_trivially_copyable_v<Record>);
  iovec part = {const_cast<Record*>(&record), sizeof record};
  Attachment attachment{};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  if (descriptor >= 0) {
    message.msg_control = &attachment;
    message.msg_controllen = sizeof attachment;
    attachment.header.cmsg_level = SOL_SOCKET;
    attachment.header.cmsg_type = SCM_RIGHTS;
    attachment.header.cmsg_len = CMSG_LEN(sizeof descriptor);
    std::memcpy(CMSG_DATA(&attachment.header), &descriptor, sizeof descriptor);
  }
  return sendmsg(socket, &message, MSG_NOSIGNAL) == static_cast<ssize_t>(sizeof record);
}

/// False at the other's end, and for anything but one whole record of this version.
template <typename Record>
bool Receive(int socket, Record& record, Descriptor& descriptor) {
  static_assert(std::is_trivially_copyable_v<Record>);
  iovec part = {&record, sizeof record};
  Attachment attachment{};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  message.msg_control = &attachment;
  message.msg_controllen = sizeof attachment;
  const ssize_t got = recvmsg(socket, &message, MSG_CMSG_CLOEXEC);
  if (const cmsghdr* header = got > 0 ? CMSG_FIRSTHDR(&message) : nullptr;
      header != nullptr && header->cmsg_level == SOL_SOCKET && header->cmsg_type == SCM_RIGHTS &&
      header->cmsg_len == CMSG_LEN(sizeof(int))) {
    int number = -1;
    std::memcpy(&number, CMSG_DATA(header), sizeof number);
    descriptor = Descriptor(number);
  }
  return got == static_cast<ssize_t>(sizeof record) && (message.msg_flags & MSG_TRUNC) == 0 &&
         record.version == kProtocolVersion;
}

}  // namespace helper
