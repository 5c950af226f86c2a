#include <HostSupport/MessageHandler.h>

MessageHandler::~MessageHandler() = default;
