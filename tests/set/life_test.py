# SPDX-License-Identifier: Apache-2.0
"""The life of the process on a whole set: out of sight and back, launched again, in another language, and
for people who see little."""

import unittest

from flows_test import REGISTERED_MENU, FlowCase


class Life(FlowCase):
    def pauses_and_resumes(self):
        for verb, call, change, before in (("pause", "calling Pause", "Decreasing Vconf", 1),
                                           ("resume", "calling Resume", "increasing Vconf", 0)):
            mark = self.walk.set.log.mark()
            self.walk.set.control(verb)
            self.walk.set.wait_for_log(call, mark)
            self.walk.set.wait_for_log(rf"current vconf is: {before}$", mark)
            self.assertEqual([change, f"current vconf is: {before}"], self.counter_lines()[-2:])

    def test_the_counter_goes_down_out_of_sight_and_up_again_in_every_state(self):
        self.switch_on()
        self.pauses_and_resumes()
        self.press("Return")
        self.sees(title="PinRequesting")
        self.pauses_and_resumes()
        self.event("0 0")
        self.sees(title="PinDisplaying")
        self.pauses_and_resumes()
        self.event("0 1")
        self.sees(popup=["Connecting to the server…"])
        self.pauses_and_resumes()
        self.event("0 2")
        self.sees(title="ShopListScreen", focus="Select")
        self.pauses_and_resumes()
        self.press("Escape")
        self.reads("quitRequested", "ZOLT GUI application: Closing")
        self.walk.end()
        self.assertEqual(["Decreasing Vconf", "current vconf is: 1"],
                         [line for line in self.counter_lines() if "already" not in line][-2:])

    def test_a_pause_while_paused_changes_nothing(self):
        self.switch_on()
        self.walk.set.control("pause")
        self.walk.set.wait_for_log("current vconf is: 1$")
        mark = self.walk.set.log.mark()
        self.walk.set.control("pause")
        self.walk.set.control("ping")
        self.assertIsNone(self.walk.set.log.find("current vconf is", mark))
        self.walk.set.control("resume")
        self.walk.set.wait_for_log("current vconf is: 0$", mark)

    def test_a_second_launch_leaves_a_screen_whose_buttons_end_the_program_in_order(self):
        self.switch_on()
        mark = self.walk.set.log.mark()
        self.walk.set.control("app-control")
        self.walk.set.wait_for_log(r"Called ZOLT::GUI::Controller::~Controller", mark)
        self.sees(title="MainMenuUnregisteredScreen", depth=1, focus="New registration")
        self.press("Return")
        self.reads("Exception caught: No controller", "Decreasing Vconf", "current vconf is: 1$")
        self.walk.end(expected=1)

    def speak(self, language):
        self.release()
        locale = f"{language}.utf8"
        self.walk.set.folder.make_locale(self.walk.set.environment()["LOCPATH"], locale)
        self.walk.set.control("set", "Language", "Language", locale)

    def test_a_change_of_language_renews_the_menu_and_its_question(self):
        self.switch_on(registered=True)
        self.speak("ko_KR")
        self.sees(words=["등록 변경", "등록 해제", "등록 정보", "취소"])
        self.speak("en_US")
        self.sees(buttons=REGISTERED_MENU)

    def test_a_change_of_language_renews_the_composed_line_of_the_pin(self):
        self.switch_on()
        self.press("Return")
        self.sees(title="PinRequesting")
        self.event("0 0")
        self.sees(title="PinDisplaying", words=["Software version : 1.0.0", "Not registered"])
        self.speak("ko_KR")
        self.sees(words=["소프트웨어 버전 : 1.0.0", "취소"])
        self.assertNotIn("Not registered", self.screen().window.words)

    def test_a_change_of_language_renews_the_composed_line_of_the_information(self):
        self.switch_on(registered=True)
        for place in ("Deregister", "Registration information"):
            self.press("Down")
            self.sees(focus=place)
        self.press("Return")
        self.sees(title="RegistrationInfoScreen", words=["Shop code :", "Chain :"])
        self.speak("ko_KR")
        self.sees(words=["매장 코드 :", "Chain :"])

    def height_of_the_title(self):
        self.walk.set.camera.settled()
        return next(piece.height for piece in self.screen().window.all("text")
                    if piece.text == "ZOLT Content")

    def test_a_set_for_people_who_see_little_starts_enlarged_and_in_high_contrast(self):
        description = self.write("set.ini", self.key_file(
            {"Accessibility": {"FocusZoom": 1, "HighContrast": 1}}))
        self.switch_on()
        plain = self.height_of_the_title()
        self.switch_on(description=description)
        self.reads("Enlarge Mode ON", "High Contrast Mode ON")
        large = self.height_of_the_title()
        self.assertAlmostEqual(1.2, large / plain, delta=0.05, msg=f"{plain} and {large} pixels")


if __name__ == "__main__":
    unittest.main(verbosity=2)
