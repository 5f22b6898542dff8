#include "MessageChannel.h"

MessageChannel::~MessageChannel() = default;
