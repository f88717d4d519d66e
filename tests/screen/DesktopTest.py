"""The small application: the report over it at launch, its menus, its console and the refresh."""
import http.server
import json
import threading

from Accessible import press_keys, type_text, wait_for
from WindowTest import WindowTest, blocklist, main, rule

TITLE = "System Compatibility Report"
CONTINUE = ("push button", "Continue with known issues...")
ERROR = rule("Linux", "ERROR", "It may crash.", "https://example.com/linux")
SERVED_PATH = "/systemcompatibilityreport/1.0/win/blocklist.en_US.json"


class Desktop(WindowTest):
    def start_desktop(self, *arguments):
        """Starts the application and closes the report that comes up over it."""
        self.write_blocklist(blocklist(ERROR))
        self.start("desktop", *arguments)
        report = self.window(TITLE, CONTINUE)
        self.assertEqual(len(self.windows()), 2)
        self.picture("launch")
        report.find(*CONTINUE).press()
        self.main_window = self.window(TITLE, ("menu bar",))
        self.wait_for_log("Launch run: 0 FATAL, 1 ERROR, 0 WARN, 0 INFO\n")
        wait_for("the main window to have the keyboard", lambda: self.main_window.has("ACTIVE"))

    def log(self):
        return self.main_window.find("text", "Log").text

    def wait_for_log(self, text):
        wait_for(f"the log to say {text!r}", lambda: text in self.log())

    def choose(self, menu, name):
        """Chooses a menu's item by the keyboard."""
        self.open_menu(menu)
        self.move_to(self.main_window.find("menu", menu), name, "Down")
        press_keys("Return")

    def open_menu(self, name):
        """Opens a menu by the keyboard."""
        self.window(TITLE, ("menu bar",))
        press_keys("F10")
        self.move_to(self.main_window.find("menu bar"), name, "Right")
        wait_for(f"the menu {name}", lambda: self.main_window.find("menu", name).children()[0].is_showing())

    @staticmethod
    def move_to(bar_or_menu, name, key):
        """Presses the key until the part of that name is the selected one."""
        def selected():
            return [part.name for part in bar_or_menu.children() if part.has("SELECTED")]

        for _ in bar_or_menu.children():
            before = selected()
            if before == [name]:
                return
            press_keys(key)
            wait_for("the next one", lambda before=before: selected() not in ([], before))
        assert selected() == [name], f"{key} does not lead to {name}"

    def quit(self):
        self.choose("File", "Quit")
        self.expect_end()

    def test_report_and_optimizer_from_the_menu(self):
        self.start_desktop()
        self.choose("Help", "System Compatibility Report...")
        report = self.window(TITLE, CONTINUE)
        self.assertIn(("label", "It may crash."), report.readable())
        report.find(*CONTINUE).press()
        self.wait_for_log("Report: 0 FATAL, 1 ERROR, 0 WARN, 0 INFO\n")

        self.choose("Help", "Application Optimizer...")
        optimizer = self.window("Application Optimizer", ("push button", "Optimize"))
        self.picture("optimizer")
        optimizer.find("push button", "Ignore").press()
        self.quit()

    def test_report_at_launch_can_be_turned_off_and_on(self):
        self.start_desktop()
        for is_shown in (False, True):
            self.choose("Help", "Show Report at Launch")
            wait_for("the remembered choice",
                     lambda is_shown=is_shown: self.state().get("show_issues_at_startup", True) is is_shown)
            self.open_menu("Help")
            item = self.main_window.find("check menu item", "Show Report at Launch")
            wait_for("the check mark", lambda item=item, is_shown=is_shown: item.has("CHECKED") is is_shown)
            self.picture(f"shown-at-launch-{is_shown}")
            press_keys("Escape")
            wait_for("the menu to close", lambda item=item: not item.is_showing())
            press_keys("Escape")
        self.quit()
        self.assertIn(("disable", "system-compatibility-report-display"), self.events())
        self.assertIn(("enable", "system-compatibility-report-display"), self.events())

    def test_script_console(self):
        self.start_desktop()
        self.assertEqual(self.main_window.all("text", "Lua"), [])
        self.choose("File", "Script Console")
        line = self.main_window.find("text", "Lua")
        wait_for("the line to have the keyboard", lambda: line.has("FOCUSED"))
        type_text("1+1")
        wait_for("the typed text", lambda: line.text == "1+1")
        press_keys("Return")
        self.wait_for_log("> 1+1\n2\n")
        self.assertEqual(line.text, "")
        line.text = "no such thing"
        press_keys("Return")
        self.wait_for_log("> no such thing\nconsole:1: ")
        self.picture("console")
        self.choose("File", "Script Console")
        wait_for("the line to go", lambda: not line.is_showing())
        self.quit()

    def test_close_box_ends(self):
        self.start_desktop()
        press_keys("alt+F4")
        self.expect_end()

    def test_refresh_without_a_server_says_so(self):
        self.start_desktop()
        self.choose("Help", "Refresh Blocklist")
        self.wait_for_log("Refresh: no server is known; start with --base URL\n")
        self.quit()

    def test_refresh_stores_the_blocklist_of_a_server(self):
        served = json.dumps(blocklist(rule("Linux", "WARN", "It is slow.", "https://example.com/new"))).encode()

        class Server(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                found = self.path.split("?")[0] == SERVED_PATH
                self.send_response(200 if found else 404)
                self.send_header("Content-Length", str(len(served) if found else 0))
                self.end_headers()
                if found:
                    self.wfile.write(served)

            def log_message(self, *_):
                pass

        server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Server)
        self.addCleanup(server.server_close)
        self.addCleanup(server.shutdown)
        threading.Thread(target=server.serve_forever, daemon=True).start()

        self.start_desktop("--set", "qelsystemcompatibilityreport.download_delay_secs=0",
                           "--base", f"http://127.0.0.1:{server.server_port}")
        self.wait_for_log("will be asked soon\n")
        stored = self.preferences / "SystemCompatibilityReport/1.0/win/blocklist.en_US.json"
        wait_for("the stored blocklist", lambda: stored.exists() and stored.read_bytes() == served)
        wait_for("the log to tell the outcome", lambda: self.log().count("Refresh: ") == 2)
        self.assertIn("stored", self.log().splitlines()[-1])
        self.picture("refreshed")
        # The next report is of the new list.
        self.choose("Help", "System Compatibility Report...")
        report = self.window(TITLE, CONTINUE)
        self.assertIn(("label", "It is slow."), report.readable())
        report.find(*CONTINUE).press()
        self.wait_for_log("Report: 0 FATAL, 0 ERROR, 1 WARN, 0 INFO\n")
        self.quit()


if __name__ == "__main__":
    main()
