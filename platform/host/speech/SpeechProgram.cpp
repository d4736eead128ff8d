// SPDX-License-Identifier: Apache-2.0
// One process of the speech program for each text, which gets it on its standard input.
#include "host/speech/SpeechProgram.h"

#include <glib.h>

#include "host/base/HostLog.h"
#include "host/description/Description.h"

namespace host {

namespace {

constexpr const char* PROGRAM = "espeak-ng";

bool isInstalled() {
    char* path = g_find_program_in_path(PROGRAM);
    const bool found = path != nullptr;
    g_free(path);
    return found;
}

// The set's language, such as "en-us" for en_US.utf8. The program falls back to the voice of the
// language when the country has none. Only letters and "-" reach the command line.
std::string voice() {
    std::string result;
    for (const char character : Description::text(Field::LANGUAGE)) {
        if (character == '_') {
            result += '-';
        } else if (g_ascii_isalpha(character) != 0) {
            result += g_ascii_tolower(character);
        } else {
            break;
        }
    }
    return result.empty() ? "en" : result;
}

}  // namespace

SpeechProgram::SpeechProgram()
    : m_ended(ecore_event_handler_add(ECORE_EXE_EVENT_DEL, onEnd, this)) {}

SpeechProgram::~SpeechProgram() {
    ecore_event_handler_del(m_ended);
    if (m_speaking != nullptr) {
        // Freed here: the toolkit is about to shut down and would leak the event of its end.
        ecore_exe_kill(m_speaking);
        ecore_exe_free(m_speaking);
    }
}

void SpeechProgram::speak(const std::string& text) {
    if (m_speaking != nullptr) {
        ecore_exe_terminate(m_speaking);
        m_speaking = nullptr;
    }
    if (!isInstalled()) {
        return;
    }
    // Its error output is read and dropped, so that it does not appear among that of this process.
    // It ends when this process dies.
    const int flags = ECORE_EXE_PIPE_WRITE | ECORE_EXE_PIPE_READ | ECORE_EXE_PIPE_ERROR |
                      ECORE_EXE_TERM_WITH_PARENT;
    m_speaking = ecore_exe_pipe_run((std::string(PROGRAM) + " --stdin -v " + voice()).c_str(),
                                    static_cast<Ecore_Exe_Flags>(flags), nullptr);
    if (m_speaking == nullptr) {
        logWarning(std::string("Screen reader: ") + PROGRAM + " does not start");
        return;
    }
    ecore_exe_send(m_speaking, text.c_str(), static_cast<int>(text.size()));
    ecore_exe_close_stdin(m_speaking);
}

Eina_Bool SpeechProgram::onEnd(void* self, int, void* event) {
    auto* program = static_cast<SpeechProgram*>(self);
    const auto* end = static_cast<Ecore_Exe_Event_Del*>(event);
    if (end->exe == program->m_speaking) {
        program->m_speaking = nullptr;
        if (end->exited != 0 && end->exit_code != 0) {
            logWarning(std::string("Screen reader: ") + PROGRAM + " ended with status " +
                       std::to_string(end->exit_code));
        }
    }
    return ECORE_CALLBACK_PASS_ON;
}

}  // namespace host
