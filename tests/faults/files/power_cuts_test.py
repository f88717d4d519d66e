"""Power that goes: what a disk holds afterwards, whatever was not flushed.

  power_cuts_test.py SCR SAVING_PROCESS FILE_FAULTS_LIBRARY [TEST...]
"""
import itertools
import os
import unittest

from faulty_files import DOWNLOADED, OLD_STATE, STATE, FaultyFilesTest, blocklist, run_tests

FOLDER = "a folder"


class Disk:
    """What is on a disk of what programs have done.

    The content of a file is on it when the file was flushed; before that nothing, a half or all of it may be. The names
    of a directory are on it when that very directory was flushed; before that the changes of its names may have reached
    the disk up to any one of them. A file is there when all folders on its way are."""

    def __init__(self, before):
        self.files = {name: [text, text] for name, text in before.items()}  # what was flushed, and what was written
        self.names = {name: name for name in before}  # as programs see them
        self.durable = dict(self.names)
        self.pending = {}  # the changes of each directory

    def change(self, path, names):
        self.pending.setdefault(os.path.dirname(path), []).append(names)
        for name, file in names.items():
            self.names[name] = file

    def do(self, operation, path, more):
        if operation == "create" and self.names.get(path) is None:
            file = object()
            self.files[file] = ["", ""]
            self.change(path, {path: file})
        elif operation == "make-directory":
            self.change(path, {path: FOLDER})
        elif operation == "write":
            self.files[self.names[path]][1] += bytes.fromhex(more).decode()
        elif operation == "flush" and self.names.get(path) not in (None, FOLDER):
            self.files[self.names[path]][0] = self.files[self.names[path]][1]
        elif operation == "flush":
            for names in self.pending.pop(path, []):
                self.durable.update(names)
        elif operation == "move":
            assert os.path.dirname(path) == os.path.dirname(more)
            self.change(path, {path: None, more: self.names[path]})
        elif operation == "remove":
            self.change(path, {path: None})

    def has_way_to(self, names, path):
        """Whether the folders on the way were there before or are there."""
        made = {name for name, file in self.names.items() if file is FOLDER}
        parent = os.path.dirname(path)
        while parent != "/":
            if parent in made and names.get(parent) is not FOLDER:
                return False
            parent = os.path.dirname(parent)
        return True

    def files_that_may_stand_at(self, path):
        """The files that may have that name after a cut now; None for no file."""
        # Directories do not wait for each other.
        reached = [range(len(changes) + 1) for changes in self.pending.values()]
        for counts in itertools.product(*reached):
            names = dict(self.durable)
            for count, changes in zip(counts, self.pending.values()):
                for change in changes[:count]:
                    names.update(change)
            yield names.get(path) if self.has_way_to(names, path) else None

    def texts_that_may_stand_at(self, path):
        texts = set()
        for file in set(self.files_that_may_stand_at(path)):
            if file is None:
                texts.add(None)
                continue
            flushed, written = self.files[file]
            more = written[len(flushed):]
            texts.update(flushed + more[:int(len(more) * share)] for share in (0, 0.5, 1))
        return texts


class DiskTest(unittest.TestCase):
    """The model itself: it must see what saves that are not safe can lose."""

    def texts(self, *operations, before=None):
        disk = Disk({"/p/f": "old"} if before is None else before)
        texts = set()
        for operation in operations:
            disk.do(*operation, *[""] * (3 - len(operation)))
            texts |= disk.texts_that_may_stand_at("/p/f")
        return texts, disk.texts_that_may_stand_at("/p/f")

    WRITE = (("create", "/p/t"), ("write", "/p/t", b"new!".hex()))

    def test_a_safe_save(self):
        texts, last = self.texts(*self.WRITE, ("flush", "/p/t"), ("move", "/p/t", "/p/f"), ("flush", "/p"))
        self.assertEqual((texts, last), ({"old", "new!"}, {"new!"}))

    def test_a_file_that_is_not_flushed(self):
        texts, last = self.texts(*self.WRITE, ("move", "/p/t", "/p/f"), ("flush", "/p"))
        self.assertEqual((texts, last), ({"old", "", "ne", "new!"}, {"", "ne", "new!"}))

    def test_a_directory_that_is_not_flushed(self):
        flushed = (*self.WRITE, ("flush", "/p/t"), ("move", "/p/t", "/p/f"))
        for more in ((), (("flush", "/"),), (("flush", "/p/q"),)):
            self.assertEqual(self.texts(*flushed, *more)[1], {"old", "new!"})

    def test_a_folder_whose_name_is_not_flushed(self):
        made = (("make-directory", "/p"), *self.WRITE, ("flush", "/p/t"), ("move", "/p/t", "/p/f"), ("flush", "/p"))
        self.assertEqual(self.texts(*made, before={})[1], {None, "new!"})
        self.assertEqual(self.texts(*made, ("flush", "/"), before={})[1], {"new!"})

    def test_a_file_that_is_removed_first(self):
        self.assertIn(None, self.texts(("remove", "/p/f"), *self.WRITE)[0])


class PowerCutsTest(FaultyFilesTest):
    def expect_whole(self, path, before, old, new, can_be_lost=False):
        disk = Disk(before)
        found = set()
        for _, *operation in self.operations():
            disk.do(*operation)
            found |= disk.texts_that_may_stand_at(str(path))
        self.assertEqual(found, {old, new})
        self.assertEqual(disk.texts_that_may_stand_at(str(path)), {old, new} if can_be_lost else {new})

    def test_power_cuts_during_the_save_of_the_state(self):
        self.assertEqual(self.report().returncode, 0)
        self.assertNotEqual(self.state(), OLD_STATE)
        path = self.preferences / STATE
        self.expect_whole(path, {str(path): OLD_STATE}, OLD_STATE, self.state())

    def test_power_cuts_during_the_save_of_a_download(self):
        path = self.preferences / DOWNLOADED
        self.write(path, blocklist("old"))
        self.assertEqual(self.refresh(self.serve(blocklist("downloaded"))).returncode, 0)
        self.expect_whole(path, {str(path): blocklist("old")}, blocklist("old"), blocklist("downloaded"))

    def test_power_cuts_during_the_first_download(self):
        path = self.preferences / DOWNLOADED
        self.assertEqual(self.refresh(self.serve(blocklist("downloaded"))).returncode, 0)
        # The folders are new as well, and not flushed: what is lost with them is downloaded again.
        self.expect_whole(path, {}, None, blocklist("downloaded"), can_be_lost=True)


if __name__ == "__main__":
    run_tests(3, DiskTest, PowerCutsTest)
