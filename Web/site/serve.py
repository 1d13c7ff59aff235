"""Serves the built site for a look at it and for the tests: python3 serve.py FOLDER PORT [PREFIX]

PREFIX, such as /sub/path/, is where the site stands on the server; everything beside it is 404. Port 0: any free one. Prints
the address. What pages may load stands in the pages themselves, since any server shall do.
"""
import functools
import http.server
import sys


class Site(http.server.SimpleHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    extensions_map = {**http.server.SimpleHTTPRequestHandler.extensions_map, ".wasm": "application/wasm",
                      ".js": "text/javascript", ".mjs": "text/javascript", ".lua": "text/plain; charset=utf-8",
                      ".zip": "application/zip"}

    def __init__(self, *arguments, prefix, **named):
        self.prefix = prefix
        super().__init__(*arguments, **named)

    def send_head(self):
        if not self.path.startswith(self.prefix):
            self.send_error(404)
            return None
        self.path = "/" + self.path[len(self.prefix):]
        return super().send_head()

    def list_directory(self, path):
        self.send_error(404)

    def end_headers(self):
        self.send_header("Content-Security-Policy", "frame-ancestors 'none'")
        self.send_header("Cache-Control", "no-cache")
        self.send_header("X-Content-Type-Options", "nosniff")
        super().end_headers()

    def log_message(self, *_):
        pass


def main(folder, port, prefix="/"):
    handler = functools.partial(Site, directory=folder, prefix=prefix)
    with http.server.ThreadingHTTPServer(("127.0.0.1", port), handler) as server:
        print(f"http://127.0.0.1:{server.server_address[1]}{prefix}", flush=True)
        try:
            server.serve_forever()
        except KeyboardInterrupt:
            pass


if __name__ == "__main__":
    main(sys.argv[1], int(sys.argv[2]), *sys.argv[3:4])
