# SPDX-License-Identifier: MIT
"""Client of the virtual TV for Python 3.9 and later, on the standard library alone.

    from emp_window import launch

    with launch() as tv:
        tv.window.SetChannel(3, 0)                # 1; a failure code is a value, too
        tv.window.GetCurrentChannel_Name()        # 'Lighthouse News'

`launch` starts a new TV, `connect` uses a running server. Calls are JSON-RPC requests by HTTP POST, in the client's own
session. POST can't deliver events; the JavaScript client has them, since it uses a WebSocket.
"""

from __future__ import annotations

import base64
import difflib
import http.client
import json
import os
import selectors
import subprocess
import threading
import urllib.parse
import warnings
from collections.abc import Callable, Sequence
from typing import Any, NoReturn, Optional, Union

__all__ = ["EmpConnectionError", "EmpLaunchError", "EmpRpcError", "EmpSessionWarning", "Fault", "LaunchedTv", "Tv",
           "connect", "launch"]

Parameter = Union[str, int, bool, None]
Path = Union[str, "os.PathLike[str]"]

_GREATEST_JSON_INTEGER = 2**53 - 1
_NO_SUCH_METHOD = -32601
_BAD_VALUE = 1002
_NO_SUCH_SESSION = 1003
_START_PATIENCE = 10.0  # seconds until the program must print its address
_END_PATIENCE = 5.0  # seconds until the program is killed
_MOST_OUTPUT = 64 * 1024  # characters of the program's output to keep


class EmpConnectionError(ConnectionError):
    """The server can't be reached, the connection broke, or the answer does not come from emp-window. `sent` is true
    when the server may have run the call, which is never sent again, and false when the call has not run and can be
    repeated. If no session could be opened, no call was sent. `status` is that of the HTTP answer, or None."""

    def __init__(self, message: str, *, sent: bool = False, status: Optional[int] = None) -> None:
        super().__init__(message)
        self.sent = sent
        self.status = status


class EmpRpcError(Exception):
    """The server answered a call with an error: `code`, a `reason` for a person, and the `method` that was called.
    A failure code of a plug-in command is a value, not an error."""

    def __init__(self, method: str, code: int, message: str, reason: str) -> None:
        super().__init__(f"{method}: {message}: {reason}" if reason and reason != message else f"{method}: {message}")
        self.method = method
        self.code = code
        self.reason = reason


class EmpLaunchError(Exception):
    """The program did not start; the message contains its output on standard error."""


class EmpSessionWarning(UserWarning):
    """The session ended and a new one was opened: the selected window and the found channels are lost."""


def _as_json(value: Any) -> Any:
    """The value, with integers beyond 53 bits as decimal texts, as the server expects them."""
    if isinstance(value, int) and not isinstance(value, bool) and abs(value) > _GREATEST_JSON_INTEGER:
        return str(value)
    if isinstance(value, dict):
        return {name: _as_json(part) for name, part in value.items()}
    if isinstance(value, (list, tuple)):
        return [_as_json(part) for part in value]
    return value


def _words(parameters: Sequence[Parameter]) -> list[Any]:
    """Parameters of a command; None means a missing parameter, which the plug-in reads as an empty text."""
    return ["" if parameter is None else parameter for parameter in parameters]


def _value(reply: dict[str, Any]) -> Union[int, str, None]:
    """The value of a command's reply, without loss."""
    if "bytes" in reply:
        return base64.b64decode(reply["bytes"]).decode("utf-8", "surrogateescape")
    if "units" in reply:
        units = b"".join(unit.to_bytes(2, "little") for unit in reply["units"])
        return units.decode("utf-16-le", "surrogatepass")
    return reply.get("value")


def _given(**parameters: Any) -> dict[str, Any]:
    """Those parameters that are not None."""
    return {name: value for name, value in parameters.items() if value is not None}


class _Http:
    """Sends requests to one server over a persistent connection. Each request is sent only once."""

    def __init__(self, address: str, token: Optional[str], timeout: Optional[float]) -> None:
        url = urllib.parse.urlsplit(address)
        if url.scheme not in ("http", "https") or not url.hostname:
            raise ValueError(f"an address like http://127.0.0.1:8090 is wanted, not '{address}'")
        kind = http.client.HTTPSConnection if url.scheme == "https" else http.client.HTTPConnection
        self._connection = kind(url.hostname, url.port, timeout=timeout)
        self._path = url.path.rstrip("/") + "/rpc"
        self._headers = {"Content-Type": "application/json"}
        if token is not None:
            self._headers["Authorization"] = f"Bearer {token}"
        self.address = f"{url.scheme}://{url.netloc}{url.path.rstrip('/')}"

    def post(self, body: bytes, session: Optional[str]) -> bytes:
        """Returns the body of an answer with status 200. Raises EmpConnectionError for any other answer."""
        self._connect()
        headers = self._headers if session is None else {**self._headers, "Emp-Session": session}
        try:
            self._connection.request("POST", self._path, body, headers)
            response = self._connection.getresponse()
            content = response.read()
        except BaseException as error:  # Ctrl-C too: the next call must not take the answer for its own
            self.close()
            if not isinstance(error, (OSError, http.client.HTTPException)):
                raise
            what = str(error) or type(error).__name__
            raise EmpConnectionError(f"the connection to {self.address} broke: {what}", sent=True) from error
        if response.status == 200:
            return content
        # The server refuses with these before it runs anything.
        refused = 400 <= response.status < 500 or response.status == 503
        text = content.decode("utf-8", "replace").strip()[:500]
        raise EmpConnectionError(f"{self.address}: status {response.status}: {text}", sent=not refused,
                                 status=response.status)

    def close(self) -> None:
        self._connection.close()

    def _connect(self) -> None:
        connection = self._connection
        if connection.sock is not None:
            if not self._has_ended():
                return
            connection.close()
        try:
            connection.connect()
        except OSError as error:
            raise EmpConnectionError(f"{self.address} can't be reached: {error}") from error

    def _has_ended(self) -> bool:
        """True when the server has ended the connection. Before a request is sent, nothing else can make it
        readable."""
        with selectors.DefaultSelector() as selector:
            selector.register(self._connection.sock, selectors.EVENT_READ)
            return bool(selector.select(0))


class _Window:
    """Each command of the plug-in as a function of its name. It returns the value of the reply: a number, a text, or
    None for an empty reply. Parameters go by position, or by the names in the catalogue of commands."""

    def __init__(self, tv: Tv) -> None:
        self._tv = tv

    def __getattr__(self, name: str) -> Callable[..., Union[int, str, None]]:
        if not name[:1].isupper():
            raise AttributeError(f"commands start with a capital letter, '{name}' does not")
        return lambda *parameters, **named: self._tv._command(name, parameters, named)

    def __dir__(self) -> list[str]:
        return self._tv._commands()


class Fault:
    """A fault. As a context manager, it is removed at the end of the block."""

    def __init__(self, tv: Tv, number: int) -> None:
        self._tv = tv
        self.id = number

    @property
    def hits(self) -> int:
        """The number of calls that it has hit; 0 for a removed fault."""
        return next((fault["hits"] for fault in self._tv.faults() if fault["id"] == self.id), 0)

    def clear(self) -> None:
        """Removes the fault. Does nothing if it was already removed, for instance by a restart of the set."""
        try:
            self._tv.clear_faults(self.id)
        except EmpRpcError as error:
            if error.code != _BAD_VALUE:
                raise

    def __enter__(self) -> Fault:
        return self

    def __exit__(self, *_: object) -> None:
        self.clear()


class Tv:
    """A virtual TV, accessed through a separate session. Created by `connect` and `launch`.

    The server ends a session after 30 seconds without a call. The next call opens a new one and warns
    (EmpSessionWarning) if commands have run in the old one. Threads may share the object; their calls run one by one.
    Every call raises EmpRpcError when the server answers with an error, and EmpConnectionError when there is no answer.
    """

    def __init__(self, address: str, *, app_id: Optional[str] = None, widget_id: Optional[str] = None,
                 token: Optional[str] = None, timeout: Optional[float] = 60.0) -> None:
        self._http = _Http(address, token, timeout)
        self._application = _given(appId=app_id, widgetId=widget_id)
        self._lock = threading.RLock()
        self._number = 0
        self._session: Optional[str] = None
        self._used_engine = False
        self._is_closed = False
        self._names: Optional[list[str]] = None
        self.window = _Window(self)
        try:
            self._open_session()
        except BaseException:
            self._http.close()
            raise

    @property
    def address(self) -> str:
        """The server's address, without a slash at the end."""
        return self._http.address

    @property
    def session(self) -> Optional[str]:
        """The name of the current session, which changes when the session is renewed; None after it has ended."""
        return self._session

    def __enter__(self) -> Tv:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def close(self) -> None:
        """Ends the session. Later calls raise EmpConnectionError; a second close does nothing."""
        with self._lock:
            if self._is_closed:
                return
            self._is_closed = True
            try:
                if self._session is not None:
                    self._post("session.close", {}, self._session)
            except (EmpConnectionError, EmpRpcError):
                pass  # the session is gone, or the server with it
            finally:
                self._session = None
                self._http.close()

    def execute(self, name: str, *parameters: Parameter) -> Union[int, str, None]:
        """Runs a command of any name with up to four parameters, as an app does on the set. Returns a number or a text.
        If the engine refuses the command, returns the reply if one was written, else None."""
        return self._executed("window.execute", name, parameters)

    def execute_with_param_list(self, name: str, parameters: Sequence[Parameter] = ()) -> Union[int, str, None]:
        """Runs a command with a list of any number of parameters."""
        return self._executed("window.executeWithParamList", name, parameters)

    def run(self, line: str) -> list[str]:
        """Runs a line of the shell; returns its output as a list of lines."""
        return self.call("tv.run", {"line": line})["lines"]

    def call(self, method: str, params: Union[dict[str, Any], Sequence[Any], None] = None) -> Any:
        """Calls any method of the server; returns its whole result."""
        with self._lock:
            if self._is_closed:
                raise EmpConnectionError(f"{method}: the connection to {self.address} was closed")
            if self._session is None:
                self._renew()
            try:
                return self._call_once(method, params)
            except EmpRpcError as error:
                if error.code != _NO_SUCH_SESSION or method == "session.close":
                    raise
                refused = error.reason == f"there is no session '{self._session}'"
                self._session = None
                if not refused:  # it may have run
                    raise
            self._renew()
            return self._call_once(method, params)

    def state(self) -> dict[str, Any]:
        """Returns the whole set as one document."""
        return self.call("tv.state")

    def sessions(self) -> list[dict[str, Any]]:
        """The sessions, with their open engines."""
        return self.call("tv.sessions")["sessions"]

    def services(self, **query: Any) -> dict[str, Any]:
        """Returns the services that meet the conditions: offset, limit, text, antenna, kind, group, favourite, major,
        key."""
        return self.call("tv.services", query)

    def snapshot(self, before: Optional[int] = None) -> dict[str, Any]:
        """Returns everything that the set persists, for `restore`; with the number of a command, the state right before
        it."""
        return self.call("tv.snapshot", _given(before=before))["snapshot"]

    def restore(self, snapshot: dict[str, Any]) -> None:
        """Restores a snapshot. Closes all engines, so found channels are lost."""
        self.call("tv.restore", {"snapshot": snapshot})

    def restart(self) -> None:
        """Switches the set off and on; removes faults and latencies."""
        self.call("tv.restart")

    def reset(self) -> None:
        """Goes back to the built-in set."""
        self.call("tv.reset")

    def import_list(self, content: str, *, name: Optional[str] = None, format: Optional[str] = None,
                    add: bool = False, encoding: Optional[str] = None) -> dict[str, Any]:
        """Imports a channel list, given as a text. Returns the numbers of services, and the problems of its lines."""
        return self.call("tv.import", _given(content=content, name=name, format=format, add=add, encoding=encoding))

    def export(self, format: Optional[str] = None) -> dict[str, Any]:
        """Returns the services as a channel list in `content`, by default in JSON, which holds everything. Also counts
        the losses of other formats."""
        return self.call("tv.export", _given(format=format))

    def scan(self, path: Optional[str] = None, *, content: Optional[bytes] = None, import_found: bool = False,
             add: bool = False) -> dict[str, Any]:
        """Finds the services in a recording of a broadcast: a file beneath the server's `--files`, or bytes. Imports
        them on request."""
        text = None if content is None else base64.b64encode(content).decode("ascii")
        return self.call("tv.scan", {**_given(path=path, content=text), "import": import_found, "add": add})

    def import_scan(self, *, add: bool = False) -> dict[str, Any]:
        """Imports the services of this session's last scan. Returns the numbers of services."""
        return self.call("tv.importScan", {"add": add})

    def edit_service(self, service: Union[str, int], change: str, value: Union[str, int, None] = None) -> None:
        """Edits a service, by its id: rename, renumber, move, hide or lock (on, off), or remove."""
        self.call("tv.editService", _given(service=str(service), change=change, value=value))

    def knobs(self) -> list[dict[str, Any]]:
        """Returns the knobs, which can be read and set from outside."""
        return self.call("tv.knobs")["knobs"]

    def knob_kinds(self) -> list[dict[str, Any]]:
        """Returns the kinds of knobs, with the values that they take."""
        return self.call("tv.knobs")["kinds"]

    def get(self, name: str) -> str:
        """Returns the value of a knob, as the shell prints it."""
        return self.call("tv.get", {"name": name})["value"]

    def set(self, name: str, value: Union[str, int]) -> None:
        """Sets a knob."""
        self.call("tv.set", {"name": name, "value": value})

    def settings(self) -> dict[str, Union[str, int]]:
        """The settings keys with their values."""
        return {setting["key"]: setting["value"] for setting in self.call("tv.settings")["settings"]}

    def set_setting(self, key: str, value: Union[str, int, None]) -> None:
        """Sets a settings key; None removes it."""
        if value is None:
            self.remove_setting(key)
        else:
            self.call("tv.setSetting", {"key": key, "value": value})

    def remove_setting(self, key: str) -> None:
        """Removes a settings key."""
        self.call("tv.removeSetting", {"key": key})

    def operations(self) -> list[dict[str, Any]]:
        """Returns the calls from the plug-in to the set that can be made to fail, with the names of their outputs."""
        return self.call("tv.operations")["operations"]

    def fault(self, operation: str, *, nth: Optional[int] = None, times: Union[int, str, None] = None,
              result: Any = ..., outputs: Optional[dict[str, Any]] = None,
              window: Optional[str] = None, session: Optional[str] = None) -> Fault:
        """Makes calls to the set fail.

        nth      the first call that it hits, counted from now; 1 by default
        times    how many calls it hits, or 'always'; 1 by default
        result   the result of the call: a number or a text; None for a null pointer, 'unwritten', 'throw'
        outputs  values of outputs, by name
        window   'main' or 'pip': hits only calls for that window
        session  hits only calls of that session; `tv.session` is this one
        """
        params = _given(operation=operation, nth=nth, times=times, outputs=outputs, window=window, session=session)
        if result is not ...:
            params["result"] = result
        return Fault(self, self.call("tv.fault", params)["id"])

    def faults(self) -> list[dict[str, Any]]:
        """Returns the faults, with the number of calls that each has hit."""
        return self.call("tv.faults")["faults"]

    def clear_faults(self, id: Optional[int] = None) -> None:
        """Removes a fault, or all."""
        self.call("tv.clearFaults", _given(id=id))

    def check(self, transcript: str) -> dict[str, Any]:
        """Runs a transcript, given as a text, on a separate set. Returns `passed`, and the differences as `diff`."""
        return self.call("tv.check", {"transcript": transcript})

    def why(self, command: Optional[int] = None) -> dict[str, Any]:
        """Returns everything about a command, given its number, by default about the last one of this session: its
        number `command`, its `reply`, its `calls`, changed `keys` and `log` messages."""
        return self.call("tv.why", _given(command=command))

    def history(self, command: Optional[int] = None) -> dict[str, Any]:
        """Returns the whole set right after a command, as `state` does. The command is chosen as for `why`."""
        return self.call("tv.history", _given(command=command))

    def go_back(self, command: int) -> None:
        """Restores what the set had persisted right after a command, given its number. Closes all engines."""
        self.call("tv.goBack", {"command": command})

    def discover(self) -> dict[str, Any]:
        """Returns the server's OpenRPC document."""
        return self.call("rpc.discover")

    def _executed(self, method: str, name: str, parameters: Sequence[Parameter]) -> Union[int, str, None]:
        reply = self.call(method, {"name": name, "parameters": _words(parameters)})
        value = _value(reply)
        return "" if value is None and reply["accepted"] else value

    def _command(self, name: str, parameters: Sequence[Parameter], named: dict[str, Any]) -> Union[int, str, None]:
        if parameters and named:
            raise TypeError(f"{name}: parameters go either by position or by name")
        try:
            return _value(self.call(f"window.{name}", _given(**named) or _words(parameters)))
        except EmpRpcError as error:
            if error.code != _NO_SUCH_METHOD:
                raise
            close = difflib.get_close_matches(name, self._commands(), 1)
            hint = f"did you mean '{close[0]}'?" if close else "dir(tv.window) lists them"
            raise EmpRpcError(error.method, error.code, f"the plug-in has no command '{name}'", hint) from None

    def _commands(self) -> list[str]:
        if self._names is None:
            methods = [method["name"] for method in self.discover()["methods"]]
            commands = [name[len("window."):] for name in methods if name.startswith("window.")]
            self._names = [name for name in commands if name[0].isupper()]
        return self._names

    def _open_session(self) -> None:
        try:
            answer = self._post("session.open", self._application, None)
            if not isinstance(answer, dict) or not isinstance(answer.get("session"), str):
                raise EmpConnectionError(f"session.open: the answer of {self.address} has no session; is that "
                                         "emp-window?", status=200)
            self._session = answer["session"]
        except EmpConnectionError as error:
            error.sent = False  # of the caller's call nothing has been sent
            raise
        self._used_engine = False

    def _renew(self) -> None:
        used_engine = self._used_engine
        self._open_session()
        if used_engine:
            warnings.warn(f"the session with {self.address} had ended, and a new one is open: the window that was "
                          "selected and the channels that were found are gone", EmpSessionWarning, stacklevel=5)

    def _call_once(self, method: str, params: Any) -> Any:
        result = self._post(method, params, self._session)
        self._used_engine = self._used_engine or method.startswith("window.") or method == "tv.run"
        return result

    def _post(self, method: str, params: Any, session: Optional[str]) -> Any:
        self._number += 1
        request = {"jsonrpc": "2.0", "id": self._number, "method": method, "params": _as_json(params or {})}
        try:
            content = self._http.post(json.dumps(request, allow_nan=False).encode("ascii"), session)
        except EmpConnectionError as error:
            error.args = (f"{method}: {error}",)
            raise
        return self._result(method, content)

    def _result(self, method: str, content: bytes) -> Any:
        try:
            answer = json.loads(content)
            if "error" not in answer:
                return answer["result"]
            error = answer["error"]
            reason = (error.get("data") or {}).get("reason", "")
            failure = EmpRpcError(method, error["code"], error["message"], reason)
        except (ValueError, KeyError, TypeError, AttributeError) as error:
            raise EmpConnectionError(f"{method}: the answer of {self.address} is none of JSON-RPC; is that emp-window?",
                                     sent=True, status=200) from error
        raise failure


def connect(address: str, *, app_id: Optional[str] = None, widget_id: Optional[str] = None,
            token: Optional[str] = None, timeout: Optional[float] = 60.0) -> Tv:
    """Opens a session with the server at an address like `http://127.0.0.1:8090`.

    app_id, widget_id  ids of the application and its widget
    token              the token, for a server that was started with --token
    timeout            seconds after which an unanswered call fails; None waits forever
    """
    return Tv(address, app_id=app_id, widget_id=widget_id, token=token, timeout=timeout)


class _Output(threading.Thread):
    """Reads one of the program's outputs, and keeps the end of it."""

    def __init__(self, stream: Any) -> None:
        super().__init__(daemon=True)
        self._stream = stream
        self._text = ""
        self._first: Optional[str] = None
        self._has_first = threading.Event()
        self.start()

    def run(self) -> None:
        with self._stream:
            for line in self._stream:
                if self._first is None:
                    self._first = line
                    self._has_first.set()
                self._text = (self._text + line)[-_MOST_OUTPUT:]
        self._has_first.set()

    def first_line(self, patience: float) -> Optional[str]:
        """The first line; the empty text when the program ended without one, None after the timeout."""
        return (self._first or "") if self._has_first.wait(patience) else None

    def text(self) -> str:
        """The output. Waits for its end, which comes soon after the program has ended."""
        self.join(_END_PATIENCE)
        return self._text.rstrip()


class _Program:
    """A running emp-window. It ends when the pipe to its standard input closes, and so also when this process ends."""

    def __init__(self, words: Sequence[str]) -> None:
        self._words = words
        try:
            self._process = subprocess.Popen(words, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                             stderr=subprocess.PIPE, encoding="utf-8", errors="replace")
        except FileNotFoundError:
            raise EmpLaunchError(f"{words[0]}: there is no such program; EMP_WINDOW or the option program names it"
                                 ) from None
        except OSError as error:
            raise EmpLaunchError(f"{words[0]}: {error.strerror}") from None
        self._errors = _Output(self._process.stderr)
        self.pid = self._process.pid
        try:
            self.address = self._read_address()
        except BaseException:
            self._kill()
            raise

    def _read_address(self) -> str:
        line = _Output(self._process.stdout).first_line(_START_PATIENCE)
        if line is None:
            self._fail(f"no address within {_START_PATIENCE:g} seconds")
        if not line:
            status = self._wait()
            self._fail(f"ended with signal {-status}" if status < 0 else f"ended with status {status}")
        prefix = "emp-window: "
        if not line.startswith(prefix + "http"):
            self._fail(f"an address is wanted in its first line, not '{line.rstrip()}'")
        return line[len(prefix):].strip()

    def _fail(self, reason: str) -> NoReturn:
        self._kill()
        errors = self._errors.text()
        raise EmpLaunchError(f"{' '.join(self._words)}: {reason}" + (f"\n{errors}" if errors else ""))

    def _kill(self) -> None:
        self._process.kill()
        self.end()

    def end(self) -> None:
        """Ends the program by closing its input; kills it when that takes too long."""
        assert self._process.stdin is not None
        try:
            self._process.stdin.close()
        except OSError:
            pass  # it has ended by itself
        self._wait()

    def _wait(self) -> int:
        """Waits for its end, and returns its status. Kills it when that takes too long."""
        try:
            return self._process.wait(_END_PATIENCE)
        except subprocess.TimeoutExpired:
            self._process.kill()
            return self._process.wait()


class LaunchedTv(Tv):
    """A virtual TV with its program, whose process id is `pid`. `close` also ends the program."""

    def __init__(self, program: _Program, **options: Any) -> None:
        self._program = program
        self.pid = program.pid
        try:
            super().__init__(program.address, **options)
        except BaseException:
            program.end()
            raise

    def close(self) -> None:
        """Ends the session and the program."""
        try:
            super().close()
        finally:
            self._program.end()


def _read_list(file: Path) -> str:
    with open(file, "rb") as stream:
        content = stream.read()
    try:
        return content.decode("utf-8")
    except UnicodeDecodeError:
        raise ValueError(f"{os.fspath(file)}: not UTF-8; import it with 'emp-window import --encoding', "
                         "or write it as UTF-8") from None


def launch(*, list: Optional[Path] = None, snapshot: Union[Path, dict[str, Any], None] = None,
           state: Optional[Path] = None, program: Optional[Path] = None, options: Sequence[str] = (),
           app_id: Optional[str] = None, widget_id: Optional[str] = None, token: Optional[str] = None,
           timeout: Optional[float] = 60.0) -> LaunchedTv:
    """Starts a virtual TV on a free port of this machine, fresh unless a state is given, and connects to it.

    list      path of a channel list to import
    snapshot  the initial state: a file, or a result of `tv.snapshot()`
    state     the directory for its state
    program   the path of emp-window; otherwise the environment's EMP_WINDOW, then emp-window on the path
    options   further arguments for `emp-window serve`

    The other parameters are those of `connect`. Raises EmpLaunchError with the program's output when it does not start.
    """
    words = [os.fspath(program or os.environ.get("EMP_WINDOW") or "emp-window")]
    words += [] if state is None else ["--state", os.fspath(state)]
    words += ["serve", "--listen", "127.0.0.1:0", "--until-eof"]
    words += ["--fresh"] if state is None else []
    if snapshot is not None and not isinstance(snapshot, dict):
        words += ["--snapshot", os.fspath(snapshot)]
    tv = LaunchedTv(_Program([*words, *options]), app_id=app_id, widget_id=widget_id, token=token, timeout=timeout)
    try:
        if isinstance(snapshot, dict):
            tv.restore(snapshot)
        if list is not None:
            tv.import_list(_read_list(list), name=os.path.basename(os.fspath(list)))
    except BaseException:
        tv.close()
        raise
    return tv
