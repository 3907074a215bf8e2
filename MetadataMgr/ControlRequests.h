#pragma once

#include "ipc/LinxIpc.h"
#include "log/LogLine.h"

// The log lines of an answer that cannot be allocated or sent.
struct AnswerTexts {
  const char* cannotAllocate;  // mask 1
  const char* cannotSend;
  e_LogMask cannotSendMask;
};

// Answers the sender of the current message, in place of that message.
void AnswerSender(LinxIpc& ipc, unsigned int type, unsigned int size, char* payload,
                  const AnswerTexts& texts);

// Answers a ping, without payload.
void PingHandler(LinxIpc* ipc, void* context);
