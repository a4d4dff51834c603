"""Every operation, as a client of another hand asks for it."""
import collections
import http.client
import socket
import time
import xml.etree.ElementTree as ElementTree

import served
from served import Client, class_name, intrinsic, message, result, values, xml

SENSOR, ACCOUNT, HOST = "CIM_NumericSensor", "CIM_Account", "CIM_HostComputerSystem"
DESTINATION = "CIM_ListenerDestinationCIMXML"


class InstanceOperations(served.ServedTest):
    def test_instances_are_what_the_library_has(self):
        expected = {each["path"]: each["properties"] for each in self.server.json("ei", SENSOR)}
        items = self.client.items("EnumerateInstances", ClassName=class_name("cim_numericsensor"))
        self.assertEqual(len(items), len(expected))
        for item, (path, properties) in zip(items, expected.items()):
            keys = {each.get("NAME"): each.find("KEYVALUE").text for each in item.find("INSTANCENAME")}
            for name, text in keys.items():
                self.assertIn(f'{name}="{text}"', path)
            got = values(item.find("INSTANCE"))
            self.assertEqual(got.keys(), properties.keys())
            for name, value in properties.items():
                if isinstance(value, bool):
                    value = str(value).upper()
                self.assertEqual(got[name], [str(each) for each in value] if isinstance(value, list) else
                                 value if value is None else str(value), name)

    def test_subclasses_count(self):
        names = collections.Counter(ElementTree.fromstring(each).get("CLASSNAME")
                                    for each in self.client.names("CIM_Sensor"))
        for name in ("CIM_Sensor", SENSOR):
            self.assertEqual(names[name], len(self.server.json("ein", name)))
        shallow = self.client.items("EnumerateInstances", ClassName=class_name("CIM_Sensor"), DeepInheritance=False)
        self.assertEqual(len(shallow), sum(len(self.server.json("ei", name)) for name in names))
        self.assertNotIn("CurrentReading", {each for item in shallow for each in values(item.find("INSTANCE"))})

    def test_property_list_and_origin(self):
        name = self.client.names(SENSOR)[0]
        instance, = self.client.items("GetInstance", InstanceName=name, PropertyList=["currentreading", "Nothing"],
                                      IncludeClassOrigin=True)
        self.assertEqual(list(values(instance)), ["CurrentReading"])
        self.assertEqual(instance[0].get("CLASSORIGIN"), SENSOR)
        instance, = self.client.items("GetInstance", InstanceName=name, PropertyList=[])
        self.assertEqual(list(instance), [])

    def test_create_modify_delete(self):
        system = self.server.json("ei", "CIM_SPComputerSystem")[0]["properties"]["Name"]
        text = "http://127.0.0.1:1234/a?b=1&c=<>"
        keys = {"SystemCreationClassName": "CIM_SPComputerSystem", "CreationClassName": DESTINATION,
                "SystemName": system, "Name": "CIMXML-5"}
        properties = "".join(f'<PROPERTY NAME="{name}" TYPE="string"><VALUE>{served.escape(value)}</VALUE></PROPERTY>'
                             for name, value in {**keys, "Destination": text}.items())
        instance = f'<INSTANCE CLASSNAME="{DESTINATION}">{properties}</INSTANCE>'
        name, = self.client.items("CreateInstance", NewInstance=instance)
        self.assertEqual({each.get("NAME"): each[0].text for each in name}, keys)
        self.assertEqual(self.server.json("ei", DESTINATION)[0]["properties"]["Destination"], text)
        changed = ElementTree.fromstring(instance.replace("1234", "4321"))
        self.client.call("ModifyInstance", ModifiedInstance=f"<VALUE.NAMEDINSTANCE>{xml(name)}{xml(changed)}"
                         "</VALUE.NAMEDINSTANCE>")  # the whole instance, as clients send back what they got
        self.assertIn("4321", self.server.json("ei", DESTINATION)[0]["properties"]["Destination"])
        self.client.call("DeleteInstance", InstanceName=xml(name))
        self.assertEqual(self.server.json("ei", DESTINATION), [])
        for operation, parameters in (
                ("GetInstance", {"InstanceName": xml(name)}), ("DeleteInstance", {"InstanceName": xml(name)}),
                ("ModifyInstance", {"ModifiedInstance": f"<VALUE.NAMEDINSTANCE>{xml(name)}{instance}"
                                                        "</VALUE.NAMEDINSTANCE>"})):
            self.assert_refused(6, self.client.call, operation, **parameters)

    def test_text_that_xml_cannot_carry(self):
        system = self.server.json("ei", "CIM_SPComputerSystem")[0]["properties"]["Name"]
        self.server.phctl("ci", DESTINATION, "SystemCreationClassName=CIM_SPComputerSystem",
                          f"CreationClassName={DESTINATION}", f"SystemName={system}", "Name=CIMXML-6",
                          "Destination=http://127.0.0.1:1/\x01\t\r\n<&>]]>\x7f")
        item, = self.client.items("EnumerateInstances", ClassName=class_name(DESTINATION))
        self.assertEqual(values(item.find("INSTANCE"))["Destination"],
                         "http://127.0.0.1:1/\ufffd\t\r\n<&>]]>\x7f")
        self.client.call("DeleteInstance", InstanceName=xml(item.find("INSTANCENAME")))

    def test_refusals(self):
        call = self.client.call
        sensor = class_name(SENSOR)
        for code, arguments, parameters in (
                (3, ("EnumerateInstances", "root/none"), {"ClassName": sensor}),
                (5, ("EnumerateInstances",), {"ClassName": class_name("CIM_None")}),
                (5, ("EnumerateInstances", "interop"), {"ClassName": sensor}),
                (4, ("EnumerateInstances",), {}),
                (4, ("EnumerateInstances",), {"ClassName": "text"}),
                (4, ("EnumerateInstances",), {"ClassName": sensor, "Deep": True}),
                (4, ("EnumerateInstances",), {"ClassName": sensor, "DeepInheritance": "maybe"}),
                (4, ("GetInstance",), {"InstanceName": f'<INSTANCENAME CLASSNAME="{SENSOR}"><KEYBINDING NAME="No">'
                                                       '<KEYVALUE>1</KEYVALUE></KEYBINDING></INSTANCENAME>'}),
                (7, ("CreateClass",), {}),
                (7, ("CreateInstance",), {"NewInstance": f'<INSTANCE CLASSNAME="{SENSOR}"/>'})):
            with self.subTest(arguments=arguments, parameters=parameters):
                self.assert_refused(code, call, *arguments, **parameters)

    def test_several_requests_in_a_message(self):
        first, second, third = self.client.send(
            "<MULTIREQ>" + intrinsic("EnumerateInstanceNames", ClassName=class_name(HOST)) +
            intrinsic("EnumerateInstanceNames", ClassName=class_name("CIM_None")) +
            intrinsic("GetClass", ClassName=class_name(HOST)) + "</MULTIREQ>")
        self.assertEqual(first.find("*/IRETURNVALUE/INSTANCENAME").get("CLASSNAME"), HOST)
        self.assertEqual(second.find("*/ERROR").get("CODE"), "5")
        self.assertEqual(third.find("*/IRETURNVALUE/CLASS").get("NAME"), HOST)


class AssociationOperations(served.ServedTest):
    def test_of_classes(self):
        host = class_name(HOST)
        filters = {"AssocClass": class_name("CIM_SystemDevice"), "ResultClass": class_name("CIM_Sensor"),
                   "ResultRole": "partcomponent"}
        names = [each.find(".//CLASSNAME").get("NAME")
                 for each in self.client.items("AssociatorNames", ObjectName=host, **filters)]
        self.assertEqual(names, [SENSOR, "CIM_Sensor"])
        described = self.client.items("Associators", ObjectName=host, PropertyList=["currentreading"], **filters)
        self.assertEqual([each.find("CLASS").get("NAME") for each in described], names)
        self.assertEqual([[each.get("NAME") for each in item.find("CLASS") if each.tag.startswith("PROPERTY")]
                          for item in described], [["CurrentReading"], []])
        self.assertEqual(self.client.items("AssociatorNames", ObjectName=host, Role="PartComponent",
                                           **filters), [])
        # What a class is associated with, its instances are; and the profiles of the other namespace.
        source, = self.client.names(HOST)
        for operation in ("AssociatorNames", "ReferenceNames"):
            got = {each.find(".//CLASSNAME").get("NAME") for each in self.client.items(operation, ObjectName=host)}
            self.assertGreater(len(got), 5)
            self.assertLessEqual({each.find(".//INSTANCENAME").get("CLASSNAME")
                                  for each in self.client.items(operation, ObjectName=source)}, got)
        profile, = self.client.items("AssociatorNames", ObjectName=host,
                                     AssocClass=class_name("CIM_ElementConformsToProfile"))
        self.assertEqual([each.get("NAME") for each in profile.iter("NAMESPACE")], ["root", "interop"])
        self.assert_refused(5, self.client.call, "ReferenceNames", ObjectName=class_name("CIM_None"))

    def test_objects_and_paths_agree(self):
        host, = self.client.names(HOST)
        for objects, paths, pulled, pulled_paths, filters in (
                ("Associators", "AssociatorNames", "OpenAssociatorInstances", "OpenAssociatorInstancePaths",
                 {"AssocClass": class_name("CIM_SystemDevice"), "ResultClass": class_name(SENSOR)}),
                ("References", "ReferenceNames", "OpenReferenceInstances", "OpenReferenceInstancePaths",
                 {"ResultClass": class_name("CIM_SystemDevice"), "Role": "GroupComponent"})):
            with self.subTest(objects):
                names = [xml(each[0]) for each in self.client.items(paths, ObjectName=host, **filters)]
                self.assertTrue(names)
                self.assertEqual(names, [xml(each[0]) for each in self.client.items(objects, ObjectName=host,
                                                                                    **filters)])
                opened = {"InstanceName": host, "MaxObjectCount": 1000, **filters}
                self.assertEqual(names, [xml(each) for each in self.client.items(pulled_paths, **opened)])
                self.assertEqual(names, [xml(each[0]) for each in self.client.items(pulled, **opened)])

    def test_from_a_profile_to_a_sensor(self):
        profile = [each for each in self.client.names("CIM_RegisteredProfile", "interop") if "DSP1004" in each][0]
        paths = [each[0] for each in self.client.items(
            "AssociatorNames", "interop", ObjectName=profile,
            AssocClass=class_name("CIM_ElementConformsToProfile"), ResultClass=class_name("CIM_ComputerSystem"))]
        host = [each for each in paths if each.find("INSTANCENAME").get("CLASSNAME") == HOST][0]
        self.assertEqual([each.get("NAME") for each in host.iter("NAMESPACE")], ["root", "cimv2"])
        self.assertEqual(host.find("NAMESPACEPATH/HOST").text, f"127.0.0.1:{self.server.port}")
        sensors = self.client.items("AssociatorNames", ObjectName=xml(host.find("INSTANCENAME")),
                                    ResultClass=class_name(SENSOR))
        self.assertEqual(len(sensors), len(self.server.json("ain", self.server.json("ein", HOST)[0],
                                                            "--result-class", SENSOR)))


class InteropClasses(served.ServedTest):
    def test_what_clients_read_first(self):
        for name_space in ("interop", "root/interop", "ROOT/Interop"):
            spaces = [values(item.find("INSTANCE"))["Name"] for item in self.client.items(
                "EnumerateInstances", name_space, ClassName=class_name("CIM_Namespace"))]
            self.assertEqual(spaces, ["root/cimv2", "root/interop"])
        name, = self.client.names("CIM_ObjectManager", "interop")
        manager, = self.client.items("GetInstance", "interop", InstanceName=name)
        self.assertEqual(values(manager)["ElementName"], "provider-helper")
        self.assertRegex(values(manager)["Description"], r"version \d+\.\d+\.\d+$")
        self.assertEqual(values(manager)["SystemName"],
                         self.server.json("ei", "CIM_SPComputerSystem")[0]["properties"]["Name"])
        self.assertEqual(self.client.names("CIM_WBEMService", "interop"), [name])
        self.assert_refused(6, self.client.call, "GetInstance", "interop",
                            InstanceName=name.replace(">provider-helper<", ">other<"))
        self.assert_refused(7, self.client.call, "DeleteInstance", "interop", InstanceName=name)


class PullOperations(served.ServedTest):
    def open(self, count, operation="OpenEnumerateInstances", **parameters):
        return self.client.call(operation, ClassName=class_name(SENSOR), MaxObjectCount=count, **parameters)

    def test_pieces_make_the_whole(self):
        for opening, pulling, whole in (("OpenEnumerateInstances", "PullInstancesWithPath", "EnumerateInstances"),
                                        ("OpenEnumerateInstancePaths", "PullInstancePaths",
                                         "EnumerateInstanceNames")):
            with self.subTest(opening):
                piece = self.open(0, opening)
                self.assertEqual(len(piece.find("IRETURNVALUE")), 0)
                names = []
                while result(piece, "EndOfSequence") != "TRUE":
                    piece = self.client.call(pulling, EnumerationContext=result(piece, "EnumerationContext"),
                                             MaxObjectCount=7)
                    names += [xml(each) for each in piece.iter("INSTANCENAME")]
                self.assertEqual(names, [xml(each) for item in self.client.items(whole, ClassName=class_name(SENSOR))
                                         for each in item.iter("INSTANCENAME")])

    def test_contexts(self):
        context = result(self.open(1), "EnumerationContext")
        self.assert_refused(21, self.client.call, "PullInstancePaths", EnumerationContext=context, MaxObjectCount=1)
        self.assert_refused(21, self.client.call, "PullInstancesWithPath", "interop", EnumerationContext=context,
                            MaxObjectCount=1)
        self.client.call("CloseEnumeration", EnumerationContext=context)
        self.assert_refused(21, self.client.call, "CloseEnumeration", EnumerationContext=context)
        self.assert_refused(22, self.open, 1, OperationTimeout=100000)
        self.assert_refused(14, self.open, 1, FilterQueryLanguage="DMTF:FQL", FilterQuery="SensorType=2")
        self.assert_refused(26, self.open, 1, ContinueOnError=True)
        contexts = [result(self.open(1), "EnumerationContext") for _ in range(64)]
        self.assert_refused(27, self.open, 1)
        for context in contexts:
            self.client.call("CloseEnumeration", EnumerationContext=context)

    def test_an_enumeration_that_nobody_pulls_from_ends(self):
        context = result(self.open(1, OperationTimeout=1), "EnumerationContext")
        time.sleep(1.5)
        self.assert_refused(21, self.client.call, "PullInstancesWithPath", EnumerationContext=context,
                            MaxObjectCount=1)


class Methods(served.ServedTest):
    def test_reference_job_and_embedded_error(self):
        service = [each for each in self.client.names("CIM_PowerManagementService") if "Host Power" in each][0]
        host, = self.client.names(HOST)
        response = self.client.invoke(
            "requestpowerstatechange", service,
            '<PARAMVALUE NAME="PowerState" PARAMTYPE="uint16"><VALUE>7</VALUE></PARAMVALUE>'
            f'<PARAMVALUE NAME="ManagedElement" PARAMTYPE="reference"><VALUE.REFERENCE>{host}</VALUE.REFERENCE>'
            "</PARAMVALUE>")
        self.assertNotEqual(response.find("RETURNVALUE/VALUE").text, "0")
        job = ElementTree.fromstring(result(response, "Job")).find(".//INSTANCENAME")
        self.assertEqual(job.get("CLASSNAME"), "CIM_ConcreteJob")
        errors = self.client.invoke("GetErrors", xml(job)).find("PARAMVALUE[@NAME='Errors']")
        self.assertEqual(errors.get("EmbeddedObject"), "instance")
        error, = errors.iter("VALUE")
        self.assertEqual(ElementTree.fromstring(error.text).get("CLASSNAME"), "CIM_Error")

    def test_embedded_instance_goes_in(self):
        service, = self.client.names("CIM_AccountManagementService")
        system, = self.client.names("CIM_SPComputerSystem")
        template = ('<INSTANCE CLASSNAME="CIM_Account"><PROPERTY NAME="Name" TYPE="string"><VALUE>IPMI User-9</VALUE>'
                    '</PROPERTY><PROPERTY NAME="UserID" TYPE="string"><VALUE>eva</VALUE></PROPERTY><PROPERTY.ARRAY '
                    'NAME="UserPassword" TYPE="string"><VALUE.ARRAY><VALUE>first word</VALUE></VALUE.ARRAY>'
                    "</PROPERTY.ARRAY></INSTANCE>")
        response = self.client.invoke(
            "CreateAccount", service,
            f'<PARAMVALUE NAME="System" PARAMTYPE="reference"><VALUE.REFERENCE>{system}</VALUE.REFERENCE></PARAMVALUE>'
            '<PARAMVALUE NAME="AccountTemplate" PARAMTYPE="string" EmbeddedObject="instance">'
            f"<VALUE>{served.escape(template)}</VALUE></PARAMVALUE>")
        self.assertEqual(response.find("RETURNVALUE/VALUE").text, "0")
        self.assertIn("eva", [each["properties"]["UserID"] for each in self.server.json("ei", ACCOUNT)])

    def test_refusals(self):
        account = self.client.names(ACCOUNT)[-1]
        for code, method, parameters in (
                (17, "NoSuchMethod", ""),
                (4, "RequestStateChange", '<PARAMVALUE NAME="No" PARAMTYPE="uint16"><VALUE>2</VALUE></PARAMVALUE>'),
                (13, "RequestStateChange", '<PARAMVALUE NAME="RequestedState"><VALUE>-1</VALUE></PARAMVALUE>')):
            with self.subTest(method):
                self.assert_refused(code, self.client.invoke, method, account, parameters)
        self.assert_refused(7, self.client.invoke, "RequestStateChange", self.client.names(SENSOR)[0])  # only declared


class Classes(served.ServedTest):
    def test_class_with_inherited_features(self):
        described, = self.client.items("GetClass", ClassName=class_name("cim_numericsensor"), LocalOnly=False,
                                       IncludeClassOrigin=True)
        self.assertEqual((described.get("NAME"), described.get("SUPERCLASS")), (SENSOR, "CIM_Sensor"))
        device = described.find("PROPERTY[@NAME='DeviceID']")
        self.assertEqual((device.get("CLASSORIGIN"), device.get("PROPAGATED")), ("CIM_LogicalDevice", "true"))
        self.assertEqual(device.find("QUALIFIER[@NAME='Key']/VALUE").text, "TRUE")
        units = described.find("PROPERTY[@NAME='BaseUnits']")
        lists = [[each.text for each in units.findall(f"QUALIFIER[@NAME='{name}']//VALUE")]
                 for name in ("ValueMap", "Values")]
        self.assertEqual(dict(zip(*lists))["2"], "Degrees C")
        local, = self.client.items("GetClass", ClassName=class_name(SENSOR), IncludeQualifiers=False,
                                   PropertyList=["CurrentReading", "DeviceID"])
        self.assertEqual([each.get("NAME") for each in local if each.tag == "PROPERTY"], ["CurrentReading"])
        self.assertEqual(list(local.iter("QUALIFIER")), [])

    def test_method_parameters(self):
        described, = self.client.items("GetClass", ClassName=class_name("CIM_PowerManagementService"), LocalOnly=False)
        method = described.find("METHOD[@NAME='RequestPowerStateChange']")
        self.assertEqual(method.find("PARAMETER.REFERENCE[@NAME='Job']/QUALIFIER[@NAME='Out']/VALUE").text, "TRUE")
        self.assertEqual(method.find("PARAMETER[@NAME='PowerState']").get("TYPE"), "uint16")

    def test_tree(self):
        def subclasses(**parameters):
            return [each.get("NAME") for each in self.client.items("EnumerateClassNames", **parameters)]

        everything = subclasses(DeepInheritance=True)
        below = {}
        for described in self.client.items("EnumerateClasses", DeepInheritance=True, IncludeQualifiers=False):
            below.setdefault(described.get("SUPERCLASS"), []).append(described.get("NAME"))
        self.assertEqual(sorted(sum(below.values(), [])), sorted(everything))
        self.assertEqual(subclasses(), sorted(below[None]))
        self.assertEqual(subclasses(ClassName=class_name("CIM_Sensor")), [SENSOR])
        self.assertLessEqual({each["name"] for each in self.server.json("classes")
                              if "root/cimv2" in each["namespaces"]}, set(everything))

    def test_every_qualifier_is_declared(self):
        declared = {each.get("NAME") for each in self.client.items("EnumerateQualifiers")}
        used = {each.get("NAME") for described in self.client.items("EnumerateClasses", DeepInheritance=True)
                for each in described.iter("QUALIFIER")}
        self.assertLessEqual(used, declared)


class Protocol(served.ServedTest):
    def test_requests_that_are_none(self):
        good = message(intrinsic("EnumerateClassNames"))
        bomb = '<!DOCTYPE CIM [<!ENTITY a "aaaaaaaaaa"><!ENTITY b "&a;&a;&a;&a;">]>'
        for status, error, body, headers in (
                (400, "request-not-well-formed", "<CIM", {}),
                (400, "request-not-well-formed", good.replace("4711", "\x01"), {}),
                (400, "request-not-valid", good.replace("?>", "?>" + bomb), {}),
                (400, "request-not-valid", good.replace("SIMPLEREQ", "OTHER"), {}),
                (400, "request-not-valid", good.replace("<SIMPLEREQ>", "<A>" * 100 + "</A>" * 100 + "<SIMPLEREQ>"), {}),
                (501, "unsupported-cim-version", good.replace('CIMVERSION="2.0"', 'CIMVERSION="3.0"'), {}),
                (501, "unsupported-dtd-version", good.replace('DTDVERSION="2.0"', 'DTDVERSION="9.0"'), {}),
                (501, "unsupported-protocol-version", good.replace('VERSION="1.0">', 'VERSION="2.0">'), {}),
                (501, "unsupported-operation", message("<SIMPLEEXPREQ/>"), {}),
                (400, "header-mismatch", good, {"CIMMethod": "GetClass"}),
                (400, "header-mismatch", good, {"CIMOperation": "Other"}),
                (400, "header-mismatch", good, {"Content-Type": "text/plain"}),
                (413, None, good + " " * 2_000_000, {})):
            with self.subTest(error=error, headers=headers), self.assertRaises(served.HttpError) as refused:
                self.connect().post(body.encode(), **headers)
            self.assertEqual((refused.exception.status, refused.exception.headers.get("CIMError")), (status, error))

    def test_chunked_body_that_is_too_large(self):
        with self.assertRaises(served.HttpError) as refused:
            self.connect().post(b" " * 100_000 for _ in range(20))
        self.assertEqual(refused.exception.status, 413)

    def test_another_host_name_is_refused_without_authentication(self):
        with self.assertRaises(served.HttpError) as refused:
            self.client.post(message(intrinsic("EnumerateClassNames")).encode(), Host="bmc.example.com")
        self.assertEqual(refused.exception.status, 403)

    def test_long_answer_is_chunked_for_who_understands_it(self):
        body = message(intrinsic("EnumerateInstances", ClassName=class_name("CIM_Sensor"))).encode()
        whole = self.client.post(body)
        with socket.create_connection(("127.0.0.1", self.server.port), 60) as old:
            head = "".join(f"{name}: {value}\r\n" for name, value in self.client.headers.items())
            old.sendall(f"POST /cimom HTTP/1.0\r\nHost: localhost\r\nContent-Length: {len(body)}\r\n{head}\r\n"
                        .encode() + body)
            answer = http.client.HTTPResponse(old)
            answer.begin()
            self.assertIsNone(answer.headers.get("Transfer-Encoding"))
            self.assertEqual(len(answer.read()), len(whole))

    def test_graceful_end(self):
        server = served.Server()
        self.addCleanup(server.process.kill)
        idle = socket.create_connection(("127.0.0.1", server.port), 60)
        client = Client(server)
        client.call("EnumerateClassNames")
        client.connection.close()
        server.logged(r"127\.0\.0\.1 - POST /cimom EnumerateClassNames 200 \d+ bytes \d+\.\d ms")
        with idle:
            self.assertEqual(server.stop(), 0)


if __name__ == "__main__":
    served.main()
