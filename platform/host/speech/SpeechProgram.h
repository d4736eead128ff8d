// SPDX-License-Identifier: Apache-2.0
// Speaks texts aloud with the machine's speech program.
#pragma once

#include <string>

#include <Ecore.h>

namespace host {

// Speaks one text at a time, in the language of the set, while the main loop goes on. Without the
// program on PATH it is silent. A program that still speaks is ended with this object.
class SpeechProgram {
  public:
    SpeechProgram();
    ~SpeechProgram();
    SpeechProgram(const SpeechProgram&) = delete;
    SpeechProgram& operator=(const SpeechProgram&) = delete;

    // A text that is still being spoken is cut off.
    void speak(const std::string& text);

  private:
    static Eina_Bool onEnd(void* self, int type, void* event);

    Ecore_Event_Handler* m_ended;     // deleted by this class
    Ecore_Exe* m_speaking = nullptr;  // belongs to the toolkit, which drops it when it has ended
};

}  // namespace host
