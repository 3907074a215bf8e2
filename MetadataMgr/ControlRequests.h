#pragma once

#include "ipc/LinxIpc.h"
#include "log/LogLine.h"

// The log lines for an answer that cannot be allocated or sent.
struct AnswerTexts {
  const char* cannotAllocate;  // mask 1
  const char* cannotSend;
  e_LogMask cannotSendMask;
};

// Answers the sender of the current message; overwrites that message.
void AnswerSender(LinxIpc& ipc, unsigned int type, unsigned int size, char* payload,
                  const AnswerTexts& texts);

// Answers a ping; the answer has no payload.
void PingHandler(LinxIpc* ipc, void* context);
