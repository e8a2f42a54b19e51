// A companion to begin with: keeps the bill of materials of every design that is open in the editor as a CSV file.
// Companion.exe FOLDER [CODE PAGE]; the code page is that of the machine unless one is given.
// csc /r:System.Web.Extensions.dll Companion.cs makes it, with the compiler that every Windows has in the folder
// %WINDIR%\Microsoft.NET\Framework64\v4.0.30319.
// How the two ends talk is told in docs/for-companion-authors.md.
using System;
using System.Collections.Generic;
using System.IO;
using System.Linq;
using System.Net;
using System.Net.Sockets;
using System.Text;
using System.Threading;
using System.Web.Script.Serialization;
using Data = System.Collections.Generic.Dictionary<string, object>;

// The host's scripts keep one open. The plug-in makes others, to see who listens or to ask one thing.
class Connection {
    static readonly string[] Columns = {"PartNumber", "Value", "PartRef", "PartName", "PCBFootprint", "PinNumber"};
    static readonly Encoding Bytes = Encoding.GetEncoding("iso-8859-1");
    static Encoding codePage;
    static string folder;
    readonly SortedSet<string> designs = new SortedSet<string>(StringComparer.OrdinalIgnoreCase);  // open ones
    readonly Queue<string> asked = new Queue<string>();  // those whose bills are still to come, in their order
    NetworkStream stream;

    static void Main(string[] words) {
        if (words.Length == 0) { Console.Error.WriteLine("Companion.exe FOLDER [CODE PAGE]"); return; }
        folder = words[0];
        codePage = words.Length > 1 ? Encoding.GetEncoding(int.Parse(words[1])) : Encoding.Default;
        var listener = new TcpListener(IPAddress.Loopback, 9601);
        listener.Start();
        while (true) new Thread(client => new Connection().Read((TcpClient)client)).Start(listener.AcceptTcpClient());
    }

    void Read(TcpClient client) {
        try {
            using (stream = client.GetStream()) {
                var reader = new BinaryReader(stream);
                while (true) Hear(MessageOf(reader.ReadBytes(reader.ReadInt32())));
            }
        } catch (Exception problem) {
            if (!(problem is EndOfStreamException)) Console.Error.WriteLine("a connection ends: " + problem.Message);
        }
    }

    // JSON is read byte for byte; TextOf brings each value out of its encoding.
    static Data MessageOf(byte[] packet) {
        try {
            var digits = Encoding.ASCII.GetString(packet);
            var bytes = new byte[digits.Length / 2];
            for (int at = 0; at < bytes.Length; at++) bytes[at] = Convert.ToByte(digits.Substring(2 * at, 2), 16);
            var json = new JavaScriptSerializer {MaxJsonLength = int.MaxValue};
            return json.DeserializeObject(Bytes.GetString(bytes)) as Data;
        } catch (Exception) {  // findings and reports hold texts of the editor that may break them
            return null;
        }
    }

    // A text of a bill is UTF-8 wherever it can be; elsewhere two bytes of UTF-8 may be a character of the code page.
    static string TextOf(object value, bool ofBill = false) {
        var bytes = Bytes.GetBytes((string)value);
        var text = Encoding.UTF8.GetString(bytes);
        var isUtf8 = text.IndexOf('\uFFFD') < 0 && (ofBill || text.Any(each => each >= '\u0800'));
        return isUtf8 ? text : codePage.GetString(bytes);
    }

    // A backslash byte inside a character is escaped like any other.
    static string Member(string name, string value) {
        value = Bytes.GetString(codePage.GetBytes(value));
        return '"' + name + "\":\"" + value.Replace("\\", "\\\\").Replace("\"", "\\\"") + '"';
    }

    void Send(string command, string result, params string[] data) {
        var message = "{" + Member("Command", command) + ",\"Data\":{" + string.Join(",", data) + "},";
        var bytes = Bytes.GetBytes(message + Member("Result", result) + "}");
        var digits = Encoding.ASCII.GetBytes(string.Concat(bytes.Select(each => each.ToString("x2"))));
        var frame = BitConverter.GetBytes(digits.Length).Concat(digits).ToArray();
        stream.Write(frame, 0, frame.Length);
    }

    void Hear(Data message) {
        if (message == null || !message.ContainsKey("Command")) return;
        var command = message["Command"] as string;
        var data = message.ContainsKey("Data") ? message["Data"] as Data : null;
        if (command == "FileStatus") {
            var design = TextOf(data["FileName"]);
            var folderEnd = Math.Max(0, design.LastIndexOfAny(new[] {'\\', '/'}));
            Send("FileStatus_EndResult", "0", Member("Path", design.Substring(0, folderEnd)));
            if ((string)data["Status"] == "Close") designs.Remove(design); else AskForBill(design);
        } else if (command == "TryUpdateBom") {
            designs.ToList().ForEach(AskForBill);
        } else if (command == "GenerateBOM_EndResult" && asked.Count > 0) {
            var name = asked.Dequeue().Split('\\', '/').Last();
            if (data.ContainsKey("Stick")) WriteTable(Path.Combine(folder, Path.ChangeExtension(name, ".csv")), data);
        } else if (command == "GetSelfId") {
            Send("GetSelfId_EndResult", "0", Member("UserId", "1"));
        } else if (command == "GetMarketResPath") {
            Send("GetMarketResPath_EndResult", "1", Member("ResId", TextOf(data["ResId"])), Member("DatPath", ""));
        }
    }

    void AskForBill(string design) {
        designs.Add(design);
        asked.Enqueue(design);
        Send("GenerateBOM", "0", Member("ProjectPath", design.Replace('\\', '/')));  // which every script understands
    }

    static void WriteTable(string file, Data bill) {
        var lines = new List<string> {string.Join(",", Columns) + ",Fitted"};
        foreach (var list in new[] {"Stick", "NotStick"}) {
            var cells = from Data part in (object[])bill[list]
                        select Columns.Select(column => '"' + TextOf(part[column], true).Replace("\"", "\"\"") + '"');
            lines.AddRange(cells.Select(row => string.Join(",", row) + (list == "Stick" ? ",yes" : ",no")));
        }
        File.WriteAllLines(file, lines);
    }
}
