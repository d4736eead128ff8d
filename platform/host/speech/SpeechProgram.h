// SPDX-License-Identifier: Apache-2.0
// Speaks texts aloud with the machine's speech program.
#pragma once

#include <string>

#include <Ecore.h>

namespace host {

// Speaks one text at a time, in the language of the set, without blocking the main loop. Silent
// when the program is not on PATH. The destructor ends a program that still speaks.
class SpeechProgram {
  public:
    SpeechProgram();
    ~SpeechProgram();
    SpeechProgram(const SpeechProgram&) = delete;
    SpeechProgram& operator=(const SpeechProgram&) = delete;

    // Interrupts a text that is still being spoken.
    void speak(const std::string& text);

  private:
    static Eina_Bool onEnd(void* self, int type, void* event);

    Ecore_Event_Handler* m_ended;     // deleted by this class
    Ecore_Exe* m_speaking = nullptr;  // freed by the toolkit when the process has ended
};

}  // namespace host
