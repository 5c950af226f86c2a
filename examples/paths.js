// Paths as URIs. Run it with: ./run examples/paths.js

var paths = [
    "C:\\Users\\me\\my file.txt",
    "\\\\server\\share\\a b",
    "file:///already good",
    "plans/first.testplan",
    "",
];

for (var i = 0; i < paths.length; ++i)
    print(JSON.stringify(paths[i]), "->", PathToURI(paths[i]));

try {
    PathToURI(42);
} catch (error) {
    print("A number is no path:", error.message);
}
